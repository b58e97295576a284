#pragma once

// Numbers of the module's resources, for the compiler and the resource compiler.

#define IDP_SOCKETS_INIT_FAILED 101
