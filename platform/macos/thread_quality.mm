#include "platform/thread_quality.h"

#include <pthread.h>

namespace corvane {

void becomeUserInitiated() {
    ::pthread_set_qos_class_self_np(QOS_CLASS_USER_INITIATED, 0);
}

} // namespace corvane
