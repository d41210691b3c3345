#pragma once

#include "base/module/module.h"

const Oxa_1_1::Module& greeterModule();
