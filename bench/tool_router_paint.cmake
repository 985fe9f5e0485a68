# The router's desk with the largest router: rows and painting.
add_executable(router_paint_bench router_paint.cpp ${CMAKE_SOURCE_DIR}/tests/sim/videohub_router.cpp)
target_link_libraries(router_paint_bench PRIVATE CorvaneViews Qt6::Network Wendrel::Warnings)
