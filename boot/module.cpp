// SPDX-License-Identifier: MIT
#include "boot/module.h"

IModule::~IModule() = default;
