#pragma once

#include <exception>
#include <string>
#include <utility>

namespace zenvora {

/// Where a fault happened. Members that say nothing stay empty or 0; lines, records and pages count as the
/// user counts them (lines and records from 1, pages of a Databook from 0, -1 when no page is meant).
struct Place {
    std::string file{};    ///< host path or the text the user gave
    long line = 0;         ///< line of a text file, from 1
    long record = 0;       ///< record or grid row, from 1
    long page = -1;        ///< page of an .mdb file, from 0
    std::string column{};  ///< column of a table or field of a source
};

/// The fault numbers of the old platform, which the rules name, and a few of our own from 20000 up.
namespace fault {
inline constexpr int kInvalidCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscript = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kFileNotFound = 53;
inline constexpr int kDeviceIo = 57;
inline constexpr int kFileExists = 58;
inline constexpr int kDiskFull = 61;
inline constexpr int kDeviceUnavailable = 68;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kDiskNotReady = 71;
inline constexpr int kPathAccess = 75;
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidUseOfNull = 94;
inline constexpr int kNoAnswer = 282;
inline constexpr int kLinkFailed = 285;
inline constexpr int kLinkTimeOut = 286;
inline constexpr int kNoConversation = 293;
inline constexpr int kInvalidProperty = 380;
inline constexpr int kPrinter = 482;
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kRecordLocked = 3218;
inline constexpr int kItemNotFound = 3265;
inline constexpr int kNoSuchColumn = static_cast<int>(0x80040E10U);
inline constexpr int kDuplicateKey = 3022;    ///< the key value exists already
inline constexpr int kNullKey = 3058;         ///< a key column is Null
inline constexpr int kEmptyText = 3315;       ///< a column that takes no empty text was given one
inline constexpr int kRequired = 3314;        ///< a required column is Null
inline constexpr int kTooLong = 3163;         ///< a text does not fit its column
inline constexpr int kRecordTooLarge = 3047;  ///< a row is longer than a page can hold
inline constexpr int kNoSuchTable = 3078;
inline constexpr int kTableExists = 3010;
inline constexpr int kColumnExists = 3380;
inline constexpr int kSyntax = 3134;        ///< a statement that is none of the accepted forms
inline constexpr int kInUse = 3045;         ///< somebody else has the Databook open for writing
inline constexpr int kReadOnly = 3027;      ///< a write to a Databook that is open for reading only
inline constexpr int kNotADatabook = 3343;  ///< the file is no database of a kind we know
inline constexpr int kDamaged = 3049;       ///< the file is a database with damage
inline constexpr int kPassword = 3031;
inline constexpr int kUnsupported = 20001;   ///< legal, but outside of what the engine does
inline constexpr int kSourceFormat = 20002;  ///< a source file that its parser cannot read
}  // namespace fault

/// A run-time fault: number (see namespace fault), a sentence for the user and an optional place.
/// `description` says what happened, to what, and what to do; it does not repeat the place's fields.
struct Fault : std::exception {
    int number = 0;
    std::string description;
    Place place;

    Fault(int faultNumber, std::string text, Place where = {})
        : number(faultNumber), description(std::move(text)), place(std::move(where)) {}
    [[nodiscard]] const char* what() const noexcept override { return description.c_str(); }
};

}  // namespace zenvora
