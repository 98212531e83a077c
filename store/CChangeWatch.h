// What happens along with every change of a project: its journal. Those who keep one stand above this room
// and install themselves here; a program without them changes projects all the same, and nothing can be
// undone.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

class CDbBase;

// Of one open database. All functions but the destructor throw CDbError; what was to be changed isn't then.
class CChangeWatch {
public:
    CChangeWatch() = default;
    virtual ~CChangeWatch() = default;
    CChangeWatch(const CChangeWatch&) = delete;
    CChangeWatch& operator=(const CChangeWatch&) = delete;

    // Before the database closes: the last moment at which statements run. Throws nothing.
    virtual void Closing() = 0;

    // Changes between the outermost two belong to one step. `name` is the language message that names it.
    virtual void BeginStep(int name) = 0;
    virtual void EndStep() = 0;

    // Before each statement that changes rows, inside its transaction if it has one.
    virtual void BeforeChange() = 0;
    // Whether something is to be stored together with the next change; and behind it, the time to do so.
    virtual bool HasPending() const = 0;
    virtual void WritePending() = 0;

    // Pictures of the project, as path texts. What is to be deleted or overwritten is kept first, together
    // with the next change, or alone by WriteStep. Returns the path that can't be kept; the reason is
    // HostFiles().LastError(). Empty if all are.
    virtual std::string_view Hold(const std::vector<std::string_view>& paths) = 0;
    // The step has made it.
    virtual void NoteMade(std::string_view path) = 0;
    // The change wasn't made after all: what Hold and NoteMade were told is forgotten.
    virtual void DropPending() = 0;
    // Stores what Hold was told as a step, or part of one, without any row: the files are to be `replaced`,
    // or else deleted, next. Where it happened: IDs.
    virtual void WriteStep(std::int32_t section, std::int32_t record, bool replaced) = 0;
};

class CChangeWatches {
public:
    CChangeWatches() = default;
    virtual ~CChangeWatches() = default;
    CChangeWatches(const CChangeWatches&) = delete;
    CChangeWatches& operator=(const CChangeWatches&) = delete;

    // For a project that has been opened to work on, which outlives it. May be null.
    virtual std::unique_ptr<CChangeWatch> Watch(CDbBase& database) = 0;
};

CChangeWatches& ChangeWatches();

// Installs `watches`, and puts back what was there when it ends. `watches` must live until then.
class CChangeWatchesScope {
public:
    explicit CChangeWatchesScope(CChangeWatches& watches);
    ~CChangeWatchesScope();
    CChangeWatchesScope(const CChangeWatchesScope&) = delete;
    CChangeWatchesScope& operator=(const CChangeWatchesScope&) = delete;

private:
    CChangeWatches* m_former;
};

// What changes while it lives is one step of the journal, in however many transactions; the outermost one
// names it. Without a journal it does nothing.
class CDbStep {
public:
    CDbStep(CDbBase& database, int name);
    ~CDbStep();
    CDbStep(const CDbStep&) = delete;
    CDbStep& operator=(const CDbStep&) = delete;

private:
    CDbBase& m_database;
    bool m_begun = false;
};
