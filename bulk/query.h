// What an operator asks a project for, as he types it: "grade>=3 code:PL", "no video", "tester:陆 -rain".
//
// Terms are parted by blanks, and all must hold. A term is
//   a text                     that stands in any column of a section or of a record; "in quotes" with blanks
//   NAME OP VALUE              a column, by its own name or one of FieldNames(); OP is = != : < <= > >=,
//   where
//                              ":" is for texts that contain the value, and codes that begin with it
//   no video                   none is named, or the file isn't there
//   no picture                 a defect without one
//   no records                 a section without any
//   finding                    the check found an error or a warning there
//   -TERM                      the opposite
// Letters' case doesn't count. Numbers compare as numbers, all else as texts, so dates compare in time.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

struct QueryTerm {
    enum class Kind { Text, Field, NoVideo, NoPicture, NoRecords, Finding };
    enum class Op { Equal, NotEqual, Contains, Less, LessEqual, Greater, GreaterEqual };
    Kind What = Kind::Text;
    bool Negated = false;
    std::string Column;  // of the table, or one of the virtual ones: "Well", "Records"
    bool OfRecord = false;
    Op How = Op::Contains;
    std::string Value;  // in lower case
};

struct Query {
    std::vector<QueryTerm> Terms;
    // What can't be understood, as it was typed; it is left out, since he may still be typing it.
    std::vector<std::string> Unclear;

    bool IsEmpty() const { return Terms.empty(); }
    bool Asks(QueryTerm::Kind what) const;
    // Whether any term is about single records, so that a list of them is to be filtered too.
    bool IsOfRecords() const;
};

Query ParseQuery(std::string_view text);

// The short names that fields have in a query.
struct QueryName {
    const char* Name;
    const char* Column;
    bool OfRecord;
};
std::span<const QueryName> FieldNames();
