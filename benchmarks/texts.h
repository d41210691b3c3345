#pragma once

#include "base/module/module.h"

/// Modules with many texts.
const Oxa_1_1::Module& textsModule();
const Oxa_1_1::Module& translatedModule();
