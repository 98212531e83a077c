// The language messages of the coding line.
#pragma once

struct CodingMessage {
    static constexpr int NoCode = 3574;
    static constexpr int UnknownCode = 3575;
    static constexpr int SeveralCodes = 3576;
    static constexpr int NoGrade = 3577;
    static constexpr int UnknownGrade = 3578;
    static constexpr int NoDistance = 3579;
    static constexpr int Unclear = 3580;
    static constexpr int BadClock = 3581;
    static constexpr int ClockAssumed = 3582;
    static constexpr int Clock = 3583;
    static constexpr int NoOpenRun = 3584;
    static constexpr int SeveralRuns = 3585;
    static constexpr int Manhole = 3586;
    static constexpr int ManholeForm = 3587;
    static constexpr int LinePlaceholder = 3588;
    static constexpr int CommentPlaceholder = 3589;
    static constexpr int Keys = 3590;
    static constexpr int RunBegins = 3591;
    static constexpr int RunEnds = 3592;
    static constexpr int Favourite = 3593;
    static constexpr int NoFavourite = 3594;
    static constexpr int Grade = 3595;
    static constexpr int Close = 3596;
    static constexpr int RunChanged = 3597;
    static constexpr int RunNotKept = 3598;
};
