// One typed line codes one defect: "PL3 12.4 0903 text" is code and grade, distance, clock and comment. A
// line that is only half typed is read as far as it goes, so that it can be shown what was understood.
//
//   PL3       code and grade; also "PL 3". Full-width characters count as their ASCII ones.
//   12.4      metres, with a point or with "m"; "12.4~15" for a run
//   0903      from 9 to 3 o'clock, as in field files; "0003" is 3 o'clock alone
//   the rest  comment
//   [PL3 ...  the run begins here; its end comes later
//   ]15.2     ends the run of the section that is open; "]PL 15.2" or "]2 15.2" if there are several
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct CodingLine {
    enum class Run { None, Begins, Ends };

    Run Mark = Run::None;
    std::string Code;     // upper case, with the digit of the grade if it was typed with it
    std::string Grade;    // one digit that stands by itself
    std::string Start;    // as typed, without a unit
    std::string End;      // of a run; empty for a place
    std::string Clock;    // four digits
    std::string Unclear;  // the first fragment that could be two things: nothing may be stored then
    std::string Comment;
    int Choice = 0;  // which of the open runs is ended, from 1; 0: not said
};

// `comment` is what was typed in a field of its own; it comes behind what the line itself has.
CodingLine ReadCodingLine(std::string_view line, std::string_view comment = {});

// Full-width letters, digits and marks as their ASCII ones; all else as it is.
std::string HalfWidth(std::string_view text);
