#include <gtest/gtest.h>

#include "tests/store/CProjectTest.h"
#include "workbench/review.h"

namespace {

_REC_DATA Record(const std::string& video, double time) {
    _REC_DATA record;
    record.Video = video;
    record.Pictures.Add({"\\p.jpg", time});
    return record;
}

using Review = CProjectTest;

}  // namespace

TEST_F(Review, MarkersLieInWholeSecondsOfTheirVideo) {
    CRecDataArray records;
    records.Add(Record("\\a\\v.avi", 1.9));
    records.Add(Record("\\A\\V.AVI", 1.2));
    records.Add(Record("\\a\\other.avi", 0.5));
    records.Add(Record("\\a\\v.avi", 3.0));   // behind the last whole second
    records.Add(Record("\\a\\v.avi", -1.0));  // no picture
    const Markers markers = BuildMarkers(records, "\\a\\v.avi", 3.9);
    EXPECT_EQ(markers.Flags, (std::vector<std::uint8_t>{0, 1, 0}));
    EXPECT_EQ(markers.Rows, (std::vector<std::uint32_t>{0, 1, 0}));
    EXPECT_TRUE(BuildMarkers(records, "\\a\\v.avi", 0.0).Flags.empty());
    EXPECT_LT(BuildMarkers(records, "\\a\\v.avi", 1e300).Flags.size(), 1e8);
}
