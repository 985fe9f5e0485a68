# Sanitizers are a property of the whole build, so that no library is left uninstrumented.
if(WENDREL_SANITIZE)
    add_compile_options(-fsanitize=${WENDREL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${WENDREL_SANITIZE})
endif()
