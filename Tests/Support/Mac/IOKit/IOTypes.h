// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for types that all of IOKit shares.

#pragma once

#include <cstdint>

using IOOptionBits = std::uint32_t;
using io_service_t = unsigned;
using io_registry_entry_t = unsigned;
