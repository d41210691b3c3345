#include "benchmarks/rows.h"

namespace Oxa_1_1::bench
{

const std::vector<Row>& allRows()
{
    static const std::vector<Row> rows = {
        {work::FROM_UTF8_SHORT, "Qt", 0.8},
        {work::FROM_UTF8_ASCII, "Qt", 0.7},
        {work::FROM_UTF8_MIXED, "Qt", 0.7},
        {work::TO_UTF8_SHORT, "Qt", 0.8},
        {work::TO_UTF8_ASCII, "Qt", 0.8},
        {work::TO_UTF8_MIXED, "Qt", 0.6},
        {work::FROM_ANSI, "ICU", 0.25},
        {work::BUILD_LIST, "Qt", 0.4},
        {work::WRITE_DOUBLE, "to_chars", 0.6},
        {work::READ_INTS, FLOOR, 1.1},
        {work::FIND_UNIT, FLOOR, 1.2},
        {work::FIND_TEXT, FLOOR, 1.5},
        {work::COMPARE, FLOOR, 2.0},
        {work::MAP_INSERT, FLOOR, 1.2},
        {work::MAP_FIND, FLOOR, 1.2},
        {work::ESCAPE, FLOOR, 2.0},
        {work::COPY, "std", 1.1},
        {work::MOVE, "std", 1.1},
        {work::OWN, FLOOR, 1.0},
        {work::OWN_SHARED, FLOOR, 1.0},
        {work::CREATE, FLOOR, 1.2},
        {work::WATCH, FLOOR, 1.0},
        {work::KIND_HIT, FLOOR, 1.2},
        {work::KIND_MISS, FLOOR, 1.2},
        {work::PARSE_PATH, FLOOR, 1.5},
        {work::MAKE_RELATIVE, FLOOR, 2.0},
        {work::LIST_FOLDER, FLOOR, 1.4},
        {work::LIST_TREE, FLOOR, 1.2},
        {work::LIST_MEMORY, LIMIT, 1.0, Unit::BYTES},
        {work::COPY_LARGE, "cp", 0.8},
        {work::COPY_SMALL, "cp -r", 1.0},
        {work::REMOVE_SMALL, FLOOR, 1.2},
        {work::LIST_DEEP, "find", 3.0},
        {work::COPY_DEEP, "cp -a", 3.0},
        {work::REMOVE_DEEP, "rm -rf", 3.0},
        {work::DEEPER, LIMIT, 1.0, Unit::TIMES},
        {work::COPY_WIDE, "cp -a", 1.0},
        {work::REMOVE_WIDE, "rm -rf", 1.2},
        {work::COPY_WIDER, LIMIT, 1.0, Unit::TIMES},
        {work::MOVE_WIDER, LIMIT, 1.0, Unit::TIMES},
        {work::REMOVE_WIDER, LIMIT, 1.0, Unit::TIMES},
        {work::TEXT_BY_ID, FLOOR, 2.5},
        {work::TEXT_IN_LANGUAGE, FLOOR, 3.0},
        {work::PARSE_HEADER, "std::map", 0.5},
        {work::LOOK_UP_SYMBOL, "std::map", 1.0},
        {work::CAPTURE, "backtrace", 1.0},
        {work::CAPTURE_NAMED, "libbacktrace", 1.0},
        {work::COUNT_DEPTH, "backtrace", 1.0},
        {work::PASS_OVER, FLOOR, 2.0},
        {work::POINT_TO_DOUBLE, FLOOR, 2.0},
        {work::POINT_TO_FLOAT, FLOOR, 2.0},
        {work::ENCODE_NORMAL, FLOOR, 2.5},
        {work::DECODE_NORMAL, FLOOR, 2.5},
    };
    return rows;
}

}  // namespace Oxa_1_1::bench
