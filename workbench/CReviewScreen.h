// What a review session shows itself on and asks: the lists, the player, the picture and the timers of its
// window.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/records/records.h"

class CDbRec;
struct Markers;

class CReviewScreen {
public:
    // Section and defect are deferred reactions to a selection, so that a burst of changes is one action;
    // the duration is polled for.
    enum class Timer { Section = 1, Defect = 2, Duration = 3 };

    virtual ~CReviewScreen() = default;

    // Anew from the database, with counts and colours; nothing is selected then. A failure has told its
    // message and leaves the list empty.
    virtual void FillSections(CDbRec& database) = 0;
    virtual void FillDefects(CDbRec& database, std::int32_t sectionId) = 0;
    virtual void ClearDefects() = 0;
    virtual const CTestingDataArray& Sections() const = 0;
    virtual const CRecDataArray& Records() const = 0;
    virtual const _TESTING_DATA* SelectedSection() const = 0;  // null if none is
    virtual const _REC_DATA* SelectedRecord() const = 0;
    // By ID. False, with none selected, if it isn't in the list.
    virtual bool SelectSection(std::int32_t id) = 0;
    virtual bool SelectRecord(std::int32_t id) = 0;

    // Stops the player first. Empty unloads.
    virtual void LoadVideo(std::string_view pathText) = 0;
    virtual std::string Video() const = 0;
    virtual double Duration() const = 0;  // seconds; 0 while it isn't known
    virtual void Seek(double seconds) = 0;

    virtual void ShowPicture(std::string_view pathText) = 0;  // empty: none
    virtual void ShowMarkers(const Markers& markers) = 0;
    // After a change of project or selection: title, and the texts that stand where there is nothing.
    virtual void ShowState() = 0;

    // Setting a running timer starts it anew.
    virtual void StartTimer(Timer timer) = 0;
    virtual void StopTimer(Timer timer) = 0;
};
