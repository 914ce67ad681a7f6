#include "markers/MarkerReports.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace tov {
namespace {

// Correlations below come from a step-by-step numpy float32 model of the
// one-pass formula on the character codes.

class Reports : public testing::Test {
 protected:
  Reports() : names(3), markerType(3, 4), kept(2) {
    const char* rows[] = {"ABAB", "AABB", "ABAX"};
    for (int m = 1; m <= 3; ++m) {
      names(m) = std::string("M");
      names(m) += static_cast<char>('0' + m);
      names(m).resize(35, ' ');
      for (int l = 1; l <= 4; ++l) markerType(m, l) = rows[m - 1][l - 1];
    }
    kept(1) = 1;
    kept(2) = 2;
  }
  std::string Written(void (*write)(TextOutput&, const Array<std::string, 1>&, const Array<char, 2>&,
                                    const Array<std::int32_t, 1>&)) {
    const std::string path = testing::TempDir() + "/report.txt";
    TextOutput unit;
    EXPECT_TRUE(unit.Create(path));
    write(unit, names, markerType, kept);
    unit.Close();
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }
  Array<std::string, 1> names;
  Array<char, 2> markerType;
  Array<std::int32_t, 1> kept;
};

const std::string Labels = "    MarkerID                          MarkerName";

TEST_F(Reports, MarkerTableCountsTheLettersAndFlagsWhatIsNotKept) {
  EXPECT_EQ(Written(WriteMarkerTable),
            Labels + " Size(Donor) Size(Bkgrd)     Missing     Deleted\n" +
                "           1                                  M1           2           2           0           0\n"
                "           2                                  M2           2           2           0           0\n"
                "           3                                  M3           2           1           1           1\n");
}

TEST_F(Reports, CorrelationReportHasTwoLowerTrianglesWithoutTrailingBlanks) {
  EXPECT_EQ(Written(WriteCorrelationReport),
            Labels + "           1           2           3\n" +
                "           1                                  M1      1.0000\n"
                "           2                                  M2      0.0000      1.0000\n"
                "           3                                  M3      0.6108      0.5599      1.0000\n"
                "\n" +
                Labels + "           1           2\n" +
                "           1                                  M1      1.0000\n"
                "           2                                  M2      0.0000      1.0000\n"
                "\n");
}

TEST(CorrelationReport, EachTableStopsAtOneThousandMarkers) {
  const int numMarkers = 1001;
  Array<std::string, 1> names(numMarkers);
  Array<char, 2> markerType(numMarkers, 2);
  Array<std::int32_t, 1> kept(numMarkers);
  for (int m = 1; m <= numMarkers; ++m) {
    names(m) = std::to_string(m);
    markerType(m, 1) = m % 2 ? 'A' : 'B';
    markerType(m, 2) = m % 2 ? 'B' : 'A';
    kept(m) = m;
  }
  const std::string path = testing::TempDir() + "/capped.coe";
  TextOutput unit;
  ASSERT_TRUE(unit.Create(path));
  WriteCorrelationReport(unit, names, markerType, kept);
  unit.Close();
  std::ifstream file(path);
  std::string line;
  std::vector<std::string> lines;
  while (std::getline(file, line)) lines.push_back(line);
  ASSERT_EQ(lines.size(), 2u * (1 + 1000 + 1));
  EXPECT_EQ(lines[0].size(), 48u + 12u * 1000u) << "the first heading stops where the rows stop";
  EXPECT_EQ(lines[1002].size(), 48u + 12u * 1001u) << "the kept markers' heading lists them all";
  EXPECT_EQ(lines[1000].substr(0, 12), "        1000");
  EXPECT_EQ(lines[1000].size(), 48u + 12u * 1000u);
  EXPECT_EQ(lines[1001], "");
  EXPECT_EQ(lines[1000].substr(lines[1000].size() - 24), "     -1.0000      1.0000");
}

}  // namespace
}  // namespace tov
