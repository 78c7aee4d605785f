// Darwin's classes of quality of service, as far as our adapters use them.
#pragma once

typedef enum : unsigned int
{
    QOS_CLASS_USER_INTERACTIVE = 0x21,
    QOS_CLASS_USER_INITIATED = 0x19,
} qos_class_t;
