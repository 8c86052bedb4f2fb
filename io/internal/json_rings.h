/// Nested arrays of coordinates, for both kinds of JSON.
#pragma once

#include <io/internal/json_scanner.h>
#include <io/record.h>

#include <span>
#include <string>

/// Reads arrays of points, of rings, of parts; each stands at `depth` in its object.
void gx_readPoint(gx_JsonScanner& in, gxRecord& record, int depth);
void gx_readRing(gx_JsonScanner& in, gxRecord& record, bool closed, int depth);
void gx_readPart(gx_JsonScanner& in, gxRecord& record, int depth);
void gx_readParts(gx_JsonScanner& in, gxRecord& record, int depth);

/// Append the same; `repeat` writes the first point of a ring again at its end, which is otherwise done
/// only where the last point equals it (a reader drops that one).
void gx_appendPoint(const gxVector<2>& p, std::string& out);
void gx_appendRing(std::span<const gxVector<2>> ring, bool closed, bool repeat, std::string& out);
void gx_appendPart(const gxRecord& record, std::size_t part, bool repeat, std::string& out);
void gx_appendParts(const gxRecord& record, bool repeat, std::string& out);
void gx_appendId(const gxRecordId& id, std::string& out);
