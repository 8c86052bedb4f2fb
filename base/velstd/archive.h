/// The archive: one operation both stores and loads.
#pragma once

#include <velstd/export.h>

/// (the framework is completed by the archive room)
class VELSTD_API gxArchive;
