# Benchmarks of the core alone.
add_executable(core_bench core_bench.cpp)
target_link_libraries(core_bench PRIVATE CorvaneCore Wendrel::Warnings benchmark::benchmark)
set_target_properties(core_bench PROPERTIES AUTOMOC OFF)
