// Tells assistive technology what the controls are that Qt does not know of.
#pragma once

namespace Accessibility {

// Every control of ours calls it; only the first call does anything.
void install();

}
