# The ICMP sweep beside fping, for inside the lab.
if(NOT APPLE)
    add_executable(sweep_bench sweep_bench.cpp)
    set_target_properties(sweep_bench PROPERTIES AUTOMOC OFF)
    target_link_libraries(sweep_bench PRIVATE CorvaneClients CorvanePlatform Wendrel::Warnings)
endif()
