// The bodies of all script methods.
#pragma once

#include "pads/PadMethods.h"
#include "params/ByNumber.h"
#include "params/FieldMethods.h"
#include "params/ProgramMethods.h"
#include "pitch/PitchMethods.h"
#include "program/FileMethods.h"
#include "program/KeygroupMethods.h"
#include "program/ObjectMethods.h"
#include "sample/EditMethods.h"
#include "sample/FileMethods.h"
#include "sample/LoopMethods.h"
#include "sample/ObjectMethods.h"
#include "sample/ZoneMethods.h"
#include "views/KeyboardMethods.h"
#include "views/ListMethods.h"
