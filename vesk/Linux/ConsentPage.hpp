#pragma once

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Linux/ConsentDatabase.hpp"
#include "VeskPlatform/Linux/DesktopDialog.hpp"
#include "vesk/CommandLine.hpp"

namespace vesk {

/// Shows the capabilities of one settings pane with their states and lets the user allow, deny or reset them, until the
/// user closes the page. Does nothing where no dialog can be shown, or where the pane has no capability that consent
/// decides about. Throws UsageError for the address of no pane.
void runConsentPage(const ConsentPageCommand& command, const DesktopDialog& dialog, ConsentDatabase& database,
                    Clock& clock);

} // namespace vesk
