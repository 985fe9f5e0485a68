// An executable to link the whole core into.
#include "core/netconfig/network_setup.h"
#include "core/support/uuid.h"

#include <cstdio>

int main() {
    std::puts(corvane::NetworkSetup::shellQuote(corvane::Uuid::generate().text()).c_str());
    return 0;
}
