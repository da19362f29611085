#pragma once

namespace ztm {

/// Shows the instruments to assistive technology as what they are: sliders, check boxes,
/// indicators, charts, and dials with pointers whose values can be read and set. Calling it again
/// does nothing.
void MakeInstrumentsAccessible();

} // namespace ztm
