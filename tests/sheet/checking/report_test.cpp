#include "sheet/checking/report.h"

#include <cmath>
#include <gtest/gtest.h>

namespace sheet::checking {
namespace {

constexpr Question slopes{"slopes", 1e-4};
constexpr Question lists{"lists", 0.0};

// Rows by line ends, cells by bars; without the headings.
std::string shown(const Report& report) {
    const formula::Matrix table = report.table();
    std::string text;
    for (std::size_t row = 1; row < table.rows; ++row) {
        for (std::size_t column = 0; column < table.columns; ++column) {
            text += column > 0 ? "|" : "";
            text += formula::exactText(table.at(row, column));
        }
        text += '\n';
    }
    return text;
}

TEST(Report, NothingAskedAgrees) {
    EXPECT_TRUE(Report{}.agrees());
    EXPECT_EQ(Report{}.table().rows, 1U);
}

TEST(Report, WhatAgreesIsOneLineWithItsWorstPlace) {
    Report report;
    report.compare(slopes, "enthalpy", "300 K", 1e-7);
    report.compare(slopes, "volume", "300 K", 1e-9);
    report.compare(slopes, "volume", "350 K", 3e-6);
    EXPECT_EQ(shown(report), "slopes|all 2|350 K|3.0e-06|1.0e-04|agrees\n");
    EXPECT_TRUE(report.agrees());
}

TEST(Report, WhatDiffersHasALineOfItsOwn) {
    Report report;
    report.compare(slopes, "enthalpy", "300 K", 1e-7);
    report.compare(slopes, "volume", "300 K", 1e-3);
    report.compare(slopes, "volume", "350 K", 2e-2);
    EXPECT_EQ(shown(report), "slopes|volume|350 K|2.0e-02|1.0e-04|DIFFERS\n"
                             "slopes|enthalpy|300 K|1.0e-07|1.0e-04|agrees\n");
    EXPECT_FALSE(report.agrees());
}

TEST(Report, ADeviationThatIsNoNumberDiffers) {
    Report report;
    report.compare(slopes, "volume", "300 K", std::nan(""));
    EXPECT_FALSE(report.agrees());
}

TEST(Report, AFailureIsShownWithItsFirstText) {
    Report report;
    report.answered(lists, "volume", "300 K");
    report.fail(lists, "viscosity", "300 K", "No correlation");
    report.fail(lists, "viscosity", "350 K", "Too hot");
    EXPECT_EQ(shown(report), "lists|viscosity|300 K|||FAILS: No correlation\nlists|volume||||answered\n");
    EXPECT_FALSE(report.agrees());
}

TEST(Report, WhatIsNotOfferedIsNoMiss) {
    Report report;
    report.notOffered(slopes, "viscosity", "No derivatives");
    report.notOffered(slopes, "thermalConductivity", "None either");
    report.compare(slopes, "volume", "300 K", 0.0);
    EXPECT_EQ(shown(report),
              "slopes|volume|300 K|0.0e+00|1.0e-04|agrees\n"
              "slopes|2 of 3|||1.0e-04|not available: No derivatives; and for other reasons\n");
    EXPECT_TRUE(report.agrees());
}

} // namespace
} // namespace sheet::checking
