#pragma once

#include_next <sys/socket.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(accept4);
ORVALEN_NOT_ON_MACOS(recvmmsg);
ORVALEN_NOT_ON_MACOS(sendmmsg);

#undef AF_ALG
#undef AF_BLUETOOTH
#undef AF_CAN
#undef AF_NETLINK
#undef AF_PACKET
#undef MSG_BATCH
#undef MSG_CMSG_CLOEXEC
#undef MSG_CONFIRM
#undef MSG_ERRQUEUE
#undef MSG_FASTOPEN
#undef MSG_FIN
#undef MSG_MORE
#undef MSG_NOSIGNAL
#undef MSG_PROXY
#undef MSG_RST
#undef MSG_SYN
#undef MSG_WAITFORONE
#undef MSG_ZEROCOPY
#undef PF_NETLINK
#undef PF_PACKET
#undef SCM_CREDENTIALS
#undef SOCK_CLOEXEC
#undef SOCK_DCCP
#undef SOCK_NONBLOCK
#undef SOCK_PACKET
#undef SOL_NETLINK
#undef SOL_PACKET
#undef SOL_TCP
#undef SOL_UDP
#undef SO_ACCEPTCONN
#undef SO_ATTACH_FILTER
#undef SO_BINDTODEVICE
#undef SO_BUSY_POLL
#undef SO_COOKIE
#undef SO_DETACH_FILTER
#undef SO_DOMAIN
#undef SO_INCOMING_CPU
#undef SO_LOCK_FILTER
#undef SO_MARK
#undef SO_MEMINFO
#undef SO_NO_CHECK
#undef SO_PASSCRED
#undef SO_PASSSEC
#undef SO_PEEK_OFF
#undef SO_PEERCRED
#undef SO_PEERSEC
#undef SO_PRIORITY
#undef SO_PROTOCOL
#undef SO_RCVBUFFORCE
#undef SO_RXQ_OVFL
#undef SO_SNDBUFFORCE
#undef SO_TXTIME
#undef SO_ZEROCOPY

// Darwin's own.
#define SO_ACCEPTCONN 0x0002
#define SO_NREAD 0x1020
#define SO_NOSIGPIPE 0x1022
#define SO_NWRITE 0x1024
