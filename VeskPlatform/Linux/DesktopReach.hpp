#pragma once

namespace vesk {

class Environment;

/// Whether a Wayland or X11 display is named by the environment and answers a connection. A display on another machine
/// is given two seconds.
bool desktopCanBeReached(Environment& environment);

} // namespace vesk
