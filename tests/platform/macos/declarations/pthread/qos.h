// What our adapters use of the quality of service of Darwin's threads.
#pragma once

#include <sys/qos.h>

#ifdef __cplusplus
extern "C" {
#endif

int pthread_set_qos_class_self_np(qos_class_t qosClass, int relativePriority);

#ifdef __cplusplus
}
#endif
