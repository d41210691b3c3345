#pragma once

#include <string>

namespace Oxa_1_1::bench
{

/// The work that is measured: the row of the table of goals, and what is done.
namespace work
{

inline const std::string FROM_UTF8_SHORT = "S1 from UTF-8, 32 ASCII bytes";
inline const std::string FROM_UTF8_TOLD = "S1 from UTF-8, 32 ASCII bytes, their number told";
inline const std::string FROM_UTF8_ASCII = "S1 from UTF-8, 4 KiB ASCII";
inline const std::string FROM_UTF8_MIXED = "S1 from UTF-8, 4 KiB mixed scripts";
inline const std::string TO_UTF8_SHORT = "S2 to UTF-8, 32 ASCII units";
inline const std::string TO_UTF8_ASCII = "S2 to UTF-8, 4 KiB ASCII";
inline const std::string TO_UTF8_MIXED = "S2 to UTF-8, 4 KiB mixed scripts";
inline const std::string FROM_ANSI = "S3 from 4 KiB windows-1252";
inline const std::string BUILD_LIST = "S4 a list item: text, int, double";
inline const std::string WRITE_DOUBLE = "S5 a double as text";
inline const std::string READ_INTS = "S6 an int from the front of 7 KB";
inline const std::string EXTRACT_DOUBLES = "S6 a double from the front of 7 KB";
inline const std::string READER_INTS = "S6 an int by a reader";
inline const std::string READER_DOUBLES = "S6 a double by a reader";
inline const std::string READER_INTS_LARGE = "S6 an int by a reader within 7 MB";
inline const std::string READER_DOUBLES_LARGE = "S6 a double by a reader within 7 MB";
inline const std::string FIND_UNIT = "S7 a unit at the end of 1 MiB";
inline const std::string FIND_TEXT = "S7 a 12-unit text at the end of 1 MiB";
inline const std::string COMPARE = "S8 compare 64 units ignoring case";
inline const std::string MAP_INSERT = "S8 insert into a map of 10,000 names";
inline const std::string MAP_FIND = "S8 look up in a map of 10,000 names";
inline const std::string ESCAPE = "S9 escape 4 KiB";
inline const std::string COPY = "S10 copy 7 units";
inline const std::string MOVE = "S10 move 7 units";
inline const std::string OWN = "O1 copy and drop an owner";
inline const std::string OWN_SHARED = "O1 the same, 2 threads";
inline const std::string CREATE = "O1 create and destroy a node";
inline const std::string WATCH = "O2 lock a watched node, drop it";
inline const std::string KIND_HIT = "O3 is-kind-of at depth 8, hit";
inline const std::string KIND_MISS = "O3 is-kind-of at depth 8, miss";
inline const std::string PARSE_PATH = "F1 parse 8 levels with . and ..";
inline const std::string MAKE_RELATIVE = "F2 make relative";
inline const std::string LIST_FOLDER = "F3 an entry of one large folder, *.txt";
inline const std::string LIST_TREE = "F4 a file of a large tree";
inline const std::string LIST_MEMORY = "F4 memory of a listed file beside its name";
inline const std::string WALK_TREE = "F4w walk past a file of a large tree, *.txt";
inline const std::string WALK_MEMORY = "F4w memory of a walk through a large tree";
inline const std::string COPY_LARGE = "F5 copy 1 MiB of a large file";
inline const std::string COPY_SMALL = "F6 copy a small file of a tree";
inline const std::string TRANSFER_SMALL = "F6t copyTree(), a small file of a tree";
inline const std::string REMOVE_SMALL = "F7 remove a small file of a tree";
inline const std::string LIST_DEEP = "F8 list one of 1,900 levels";
inline const std::string COPY_DEEP = "F8 copy one of 1,900 levels";
inline const std::string REMOVE_DEEP = "F8 remove one of 1,900 levels";
inline const std::string DEEPER = "F8 list, copy and remove twice the levels";
inline const std::string COPY_WIDE = "F9 copy one of 200,000 files in a folder";
inline const std::string REMOVE_WIDE = "F9 remove one of 200,000 files in a folder";
inline const std::string COPY_WIDER = "F9 copy twice the files in a folder";
inline const std::string MOVE_WIDER = "F9 move twice the files in a folder";
inline const std::string REMOVE_WIDER = "F9 remove twice the files in a folder";
inline const std::string TEXT_BY_ID = "R1 a text of 2000 by number";
inline const std::string TEXT_IN_LANGUAGE = "R2 a text of 5000 in 10 languages";
inline const std::string PARSE_HEADER = "R3 1 kB of a resource header";
inline const std::string LOOK_UP_SYMBOL = "R4 look up among 10,000 symbols";
inline const std::string CAPTURE = "D1 capture 32 frames";
inline const std::string RESOLVE = "D1 name 32 captured frames, warm";
inline const std::string CAPTURE_NAMED = "D1 walk with names and lines, warm";
inline const std::string COUNT_DEPTH = "D1 count all frames";
inline const std::string PASS_OVER = "D2 an assertion that is passed over";
inline const std::string POINT_TO_DOUBLE = "P1 a point from float to double";
inline const std::string POINT_TO_FLOAT = "P1 a point from double to float";
inline const std::string ENCODE_NORMAL = "P2 encode a normal";
inline const std::string DECODE_NORMAL = "P2 decode a normal";

}  // namespace work

/// Names of those who do the work. A floor is the best hand-written code for exactly that work, nobody's product.
inline const std::string OURS = "OxaBase";
inline const std::string FLOOR = "floor";
/// What must not be exceeded, where it is no ratio.
inline const std::string LIMIT = "limit";

inline bool isFloor(const std::string& who) { return who.starts_with(FLOOR) || who == LIMIT; }

}  // namespace Oxa_1_1::bench
