// The machine's condition in one line: «Thermal: Normal · Up 37h»
#pragma once

#include <QString>

class ProcessInfo;

QString systemFooter(const ProcessInfo& info);
