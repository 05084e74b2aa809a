#pragma once

#include <cstddef>
#include <cstdint>

/// What a document may demand of the reader. Real documents stay far below; anything above is
/// refused, so that a hostile document cannot exhaust memory or time.
namespace programs::limits {

/// All that is unpacked of one package, over all its parts and passes.
constexpr std::int64_t unpackedBytes = std::int64_t(2) << 30;
constexpr int packageEntries = 100000;
constexpr std::size_t partNameBytes = 1024;
constexpr int relationships = 200000;

/// One tag, comment or CDATA section.
constexpr std::size_t xmlTokenBytes = std::size_t(1) << 20;
constexpr std::size_t xmlDepth = 1000;
constexpr std::size_t xmlNamespaceBindings = 1024;

constexpr std::size_t familyNameBytes = 512;
constexpr std::size_t families = 20000;
/// Each is looked up with fontconfig, which takes about a millisecond.
constexpr std::size_t usedFamilies = 1000;

constexpr std::size_t styles = 50000;
constexpr std::size_t numberingLevels = 100000;
constexpr std::size_t cellFormats = 100000;
constexpr std::size_t sharedStrings = std::size_t(64) << 20;
constexpr std::size_t slideTemplates = 512;
constexpr std::size_t placeholders = 64;

constexpr std::size_t rtfDepth = 4000;

constexpr std::size_t compoundFatSectors = 65536;
constexpr std::size_t compoundDirectoryEntries = 65536;
constexpr std::size_t oleRecords = 5000000;

/// Heap, stacks and private mappings of the process while a document is read; with code and shared
/// data it stays below 64 MB.
constexpr std::size_t dataBytes = std::size_t(44) << 20;
constexpr unsigned processorSeconds = 60;

} // namespace programs::limits
