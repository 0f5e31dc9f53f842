#pragma once

namespace vesk {

/// How a service stands on its bus. One that the bus starts on demand is dormant until somebody asks it.
enum class ServicePresence { absent, dormant, running };

} // namespace vesk
