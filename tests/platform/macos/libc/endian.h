#pragma once

#include_next <endian.h>

#undef be16toh
#undef be32toh
#undef be64toh
#undef betoh16
#undef betoh32
#undef betoh64
#undef htobe16
#undef htobe32
#undef htobe64
#undef htole16
#undef htole32
#undef htole64
#undef le16toh
#undef le32toh
#undef le64toh
#undef letoh16
#undef letoh32
#undef letoh64
