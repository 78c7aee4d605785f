// The system's header for all that a program with windows needs.
#pragma once

#include <AppKit/AppKit.h>
#include <Foundation/Foundation.h>
