#pragma once

#include <QtGlobal>

/// Marks what the shell's runtime library offers to page plug-ins. A shell defines
/// HELIO_BUILD while it compiles its own implementation.
#ifdef HELIO_BUILD
#define HELIO_EXPORT Q_DECL_EXPORT
#else
#define HELIO_EXPORT Q_DECL_IMPORT
#endif
