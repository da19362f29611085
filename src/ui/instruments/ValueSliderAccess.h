#pragma once

namespace ztm {

/// Lets assistive tools see every ValueSlider as a slider whose value they can read and set.
/// Calling it again does nothing.
void MakeValueSlidersAccessible();

} // namespace ztm
