# The router tool with the largest router.
add_executable(router_bench router_bench.cpp ${CMAKE_SOURCE_DIR}/tests/sim/videohub_router.cpp)
target_link_libraries(router_bench PRIVATE CorvaneClients CorvaneCore Qt6::Network Wendrel::Warnings)
