#include "platform/macos/ThreadQuality.h"

#include <pthread/qos.h>

namespace orvalen {

namespace {

qos_class_t classOf(QualityOfService quality)
{
    switch (quality) {
    case QualityOfService::userInteractive:
        return QOS_CLASS_USER_INTERACTIVE;
    case QualityOfService::userInitiated:
        break;
    }
    return QOS_CLASS_USER_INITIATED;
}

} // namespace

void setThreadQuality(QualityOfService quality)
{
    pthread_set_qos_class_self_np(classOf(quality), 0);
}

} // namespace orvalen
