// The fields and resolutions of quote files, and the multipliers of prices and volumes: their ids
// in the component and at the host.
//
// Each table has one row for each field type, or each resolution; a row's index is its id.
// Ids are stored by hosts and never change.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// ---- field types

// What a column of a file holds.
enum FieldType : unsigned
{
    TypeSymbol = 0,
    TypeDate = 1,
    TypeTime = 2,
    TypeOpen = 3, // first of the prices
    TypeHigh = 4,
    TypeLow = 5,
    TypeClose = 6,  // last price of a bar
    TypePrice = 7,  // price of a tick, and last of the prices
    TypeVolume = 8, // this and all that follow are whole numbers
    TypeUpVolume = 9,
    TypeDownVolume = 10,
    TypeUnchangedVolume = 11,
    TypeTotalVolume = 12, // last of the volumes
    TypeUpTicks = 13,
    TypeDownTicks = 14,
    TypeUnchangedTicks = 15,
    TypeTotalTicks = 16,
    TypeOpenInterest = 17,
    TYPES_COUNT = 18,
};

// An unassigned column. As the I4 of GetFieldType and SetFieldType it is -1.
inline constexpr unsigned kNoType = 0xFFFFFFFF;

// IRecordParser::GetFieldIndex, ISymbolEnumerator::SymbolField: there is no such column.
inline constexpr ULONG kNoField = 0xFFFFFFFF;

// IDataParserEvents::OnError2: the record as a whole is at fault, not one of its fields.
inline constexpr LONG kWholeRecord = 65535;

// Ids by which the host knows fields (IqrlTabulexConvertor::GetField and SetField).
enum HostField : LONG
{
    HostFieldUndefined = 0, // the column isn't delivered
    HostFieldSymbol = 31,
    HostFieldOpen = 232,
    HostFieldHigh = 233,
    HostFieldLow = 234,
    HostFieldClose = 235, // Price too
    HostFieldUpVolume = 238,
    HostFieldDownVolume = 239,
    HostFieldUnchangedVolume = 248,
    HostFieldVolume = 249, // Total Volume too
    HostFieldOpenInterest = 253,
    HostFieldUpTicks = 321,
    HostFieldDownTicks = 322,
    HostFieldUnchangedTicks = 323,
    HostFieldTotalTicks = 324,
    HostFieldDate = 421,
    HostFieldTime = 422,
};

struct FieldTypeRow
{
    string_view_t sName; // internal name, the same in every language
    HostField nHostId;
};

// By FieldType. Where two types share a host id, the first one is meant on the way in.
inline constexpr FieldTypeRow kFieldTypes[TYPES_COUNT] = {
    {OLESTR("Symbol"), HostFieldSymbol},
    {OLESTR("Date"), HostFieldDate},
    {OLESTR("Time"), HostFieldTime},
    {OLESTR("Open"), HostFieldOpen},
    {OLESTR("High"), HostFieldHigh},
    {OLESTR("Low"), HostFieldLow},
    {OLESTR("Close"), HostFieldClose},
    {OLESTR("Price"), HostFieldClose},
    {OLESTR("Volume"), HostFieldVolume},
    {OLESTR("Up Volume"), HostFieldUpVolume},
    {OLESTR("Down Volume"), HostFieldDownVolume},
    {OLESTR("Unchanged Volume"), HostFieldUnchangedVolume},
    {OLESTR("Total Volume"), HostFieldVolume},
    {OLESTR("Up Ticks"), HostFieldUpTicks},
    {OLESTR("Down Ticks"), HostFieldDownTicks},
    {OLESTR("Unchanged Ticks"), HostFieldUnchangedTicks},
    {OLESTR("Total Ticks"), HostFieldTotalTicks},
    {OLESTR("Open Interest"), HostFieldOpenInterest},
};

constexpr bool IsPriceType(unsigned uiType)
{
    return uiType >= TypeOpen && uiType <= TypePrice;
}
constexpr bool IsVolumeType(unsigned uiType)
{
    return uiType >= TypeVolume && uiType <= TypeTotalVolume;
}
constexpr bool IsWholeType(unsigned uiType)
{
    return uiType >= TypeVolume && uiType < TYPES_COUNT;
}

// ---- resolutions

// What a record of a file stands for.
enum Resolution : LONG
{
    ResolutionNone = 0, // undecided
    ResolutionTick = 1, // one trade
    ResolutionTickBars = 2,
    ResolutionCountBars = 3,
    ResolutionSeconds = 4,
    ResolutionMinutes = 5,
    ResolutionDays = 6,
    ResolutionWeeks = 7,
    RESOLUTIONS_COUNT = 8,
};

// Ids by which the host knows resolutions (AddResolutionTemplate, ResolutionTemplate).
enum HostResolution : LONG
{
    HostResolutionNone = 0,
    HostResolutionTicks = 1, // ticks with a size of 1, bars of ticks with any other
    HostResolutionMinutes = 2,
    HostResolutionDays = 4,
    HostResolutionWeeks = 5,
    HostResolutionCountBars = 8,
    HostResolutionSeconds = 9,
};

// Host id by Resolution. On the way in HostResolutionTicks means the first of its two rows.
inline constexpr HostResolution kHostResolutions[RESOLUTIONS_COUNT] = {
    HostResolutionNone,    HostResolutionTicks,   HostResolutionTicks, HostResolutionCountBars,
    HostResolutionSeconds, HostResolutionMinutes, HostResolutionDays,  HostResolutionWeeks,
};

// ---- multipliers

// Codes of IqrlTabulexConvertor::PriceMultiplier and VolumeMultiplier.
enum HostMultiplier : BYTE
{
    HostMultiplierTimes1000000 = 0x01,
    HostMultiplierMillionth = 0x02,
    HostMultiplierTimes100000 = 0x40,
    HostMultiplierTimes10000 = 0x41,
    HostMultiplierTimes1000 = 0x42,
    HostMultiplierTimes100 = 0x43,
    HostMultiplierTimes10 = 0x44,
    HostMultiplierOne = 0x45,
    HostMultiplierTenth = 0x49,
    HostMultiplierHundredth = 0x4D,
    HostMultiplierThousandth = 0x4E,
    HostMultiplier10000th = 0x4F,
    HostMultiplier100000th = 0x50,
};

} // namespace IQRL_TabulexConverter
