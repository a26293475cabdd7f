#include "tests/packages/peng_robinson/definition/support.h"

#include <random>

namespace peng_robinson::test {
namespace {

std::string withCompound(const std::string& line) { return "[compounds]\n" + header + line + "\n"; }
std::string withSetting(const std::string& line) { return definition("[package]\n" + line + "\n"); }
std::string withParameter(const std::string& line) {
    return definition("[binary parameters]\ncompound 1,compound 2,k\n" + line + "\n");
}

TEST(DefinitionMistakes, TheDefinitionOfTheseTestsHasNone) { EXPECT_EQ(mistake(definition()), ""); }

TEST(DefinitionMistakes, MissingSections) {
    EXPECT_EQ(mistake(""), "0: the file has no section [compounds]");
    EXPECT_EQ(mistake("[package]\n"), "0: the file has no section [compounds]");
    EXPECT_EQ(mistake("[compounds]\n"), "0: the file has no section [compounds]");
    EXPECT_EQ(mistake("[compounds]\n" + header), "2: the table of compounds is empty");
}

TEST(DefinitionMistakes, Sections) {
    EXPECT_EQ(mistake("name,formula\n"),
              "1: the line stands before the first section; begin with [package] or [compounds]");
    EXPECT_EQ(mistake("[compounds\n"),
              "1: the section [compounds is unknown; sections are [package], [compounds] and "
              "[binary parameters]");
    EXPECT_EQ(mistake(definition("[Compounds]\n")), "5: the section [compounds] is there twice");
}

TEST(DefinitionMistakes, Columns) {
    EXPECT_EQ(mistake("[compounds]\nname,formula,Tc\n"), "2: the column \"Tc\" is unknown");
    EXPECT_EQ(mistake("[compounds]\nname,,formula\n"), "2: column 2 has no name");
    EXPECT_EQ(mistake("[compounds]\nname,formula,Name\n"), "2: the column \"Name\" is there twice");
    EXPECT_EQ(mistake("[compounds]\nname,formula\nmethane,CH4\n"), "2: the column \"CAS number\" is missing");
    EXPECT_EQ(mistake("[compounds]\n" + header.substr(0, header.size() - 5) + "\n" + methane),
              "2: the column \"cp0\" is missing");
}

TEST(DefinitionMistakes, Numbers) {
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,190.564 K,4599200,0.01142,111.667,36")),
              "3: the critical temperature \"190.564 K\" is not a number");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,\"190,564\",4599200,0.01142,111.667,36")),
              "3: the critical temperature \"190,564\" is not a number; write it with a decimal point");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16,0428,190,564,4599200,0,01142,111,667,36")),
              "3: the line has 13 cells, but the table has 9 columns; write numbers with a decimal point and "
              "put texts "
              "with a separator in quotes");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,190.564,4599200,nan,111.667,36")),
              "3: the acentric factor \"nan\" is not a number");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,1e999,4599200,0.01,111.667,36")),
              "3: the critical temperature \"1e999\" is not a number");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,--190,4599200,0.01,111.667,36")),
              "3: the critical temperature \"--190\" is not a number");
}

TEST(DefinitionMistakes, ImpossibleNumbers) {
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,-16.0428,190.564,4599200,0.01142,111.667,36")),
              "3: the molecular weight must be between 1 and 10000 g/mol, not -16.0428");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,-82.6,4599200,0.01142,111.667,36")),
              "3: the critical temperature must be between 1 and 5000 K, not -82.6");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,190.564,45.992,0.01142,111.667,36")),
              "3: the critical pressure must be between 1000 and 1e+09 Pa, not 45.992");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,190.564,4599200,11.42,111.667,36")),
              "3: the acentric factor must be between -1 and 3, not 11.42");
}

TEST(DefinitionMistakes, MissingValues) {
    EXPECT_EQ(mistake(withCompound(",CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36")),
              "3: the compound has no name");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,190.564,,0.01142,111.667,36")),
              "3: the compound has no critical pressure");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,190.564,4599200")),
              "3: the compound has no acentric factor");
    EXPECT_EQ(mistake(withCompound("methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667")),
              "3: the compound has no heat capacity; fill cp0 to cp4 or cpA to cpE");
}

TEST(DefinitionMistakes, LiquidDensityWithoutItsTemperature) {
    EXPECT_EQ(mistake("[compounds]\n" + header.substr(0, header.size() - 1) +
                      ",liquid density\nC7+,,,110,580,2600000,0.36,,180,750\n"),
              "3: the compound has no normal boiling point");
}

TEST(DefinitionMistakes, Names) {
    EXPECT_EQ(mistake(withCompound(std::string(101, 'x') +
                                   ",CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36")),
              "3: the name is longer than 100 bytes");
    EXPECT_EQ(mistake(definition("Methane,CH4,1-1-1,16.0428,190.564,4599200,0.01142,111.667,36\n")),
              "5: the compound \"Methane\" is already in line 3");
    EXPECT_EQ(mistake(definition("methane 2,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36\n")),
              "5: the CAS number \"74-82-8\" is already in line 3");
}

TEST(DefinitionMistakes, HeatCapacities) {
    const std::string columns =
        "[compounds]\nname,formula,CAS number,molecular weight,critical temperature,critical "
        "pressure,acentric factor,normal boiling point,cp0,cp1,cp from,cp to,cpA,cpB,cpC,cpD,"
        "cpE\nmethane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,";
    EXPECT_EQ(mistake(columns + "36"), "");
    EXPECT_EQ(mistake(columns + "36,0.1"), "3: the compound has no cp from");
    EXPECT_EQ(mistake(columns + "36,0.1,300"), "3: the compound has no cp to");
    EXPECT_EQ(mistake(columns + "36,0.1,300,200"), "3: cp from must be less than cp to");
    EXPECT_EQ(mistake(columns + "36,-0.1,200,1500"), "3: the heat capacity is not positive at 360 K");
    EXPECT_EQ(mistake(columns + ",0.1,200,1500"), "3: the compound has no cp0");
    EXPECT_EQ(mistake(columns + "-36"), "3: the heat capacity is not positive at 5 K");
    EXPECT_EQ(mistake(columns + ",,,,33.3,79.9,2086.9,41.6"), "3: the compound has no cpE");
    EXPECT_EQ(mistake(columns + ",,,,33.3,79.9,0,41.6,992"),
              "3: the cpC must be between 1 and 20000 K, not 0");
    EXPECT_EQ(mistake(columns + "36,,,,33.3,79.9,2086.9,41.6,992"),
              "3: the compound has two heat capacities; fill either cp0 to cp4 or cpA to cpE");
}

TEST(DefinitionMistakes, Settings) {
    EXPECT_EQ(mistake(withSetting("colour,red")),
              "6: \"colour\" is no setting of a package; settings are description, "
              "gas constant, omega a and omega b");
    EXPECT_EQ(mistake(withSetting("gas constant,83.14")),
              "6: the gas constant must be between 8.3 and 8.33 J/(mol K), not 83.14");
    EXPECT_EQ(mistake(withSetting("omega a,4.5")), "6: the omega a must be between 0.4 and 0.5, not 4.5");
    EXPECT_EQ(mistake(withSetting("omega b")),
              "6: a line of [package] has a name and a value; put a text with a separator in quotes");
    EXPECT_EQ(mistake(withSetting("description,lean, dry gas")),
              "6: a line of [package] has a name and a value; put a text with a separator in quotes");
    EXPECT_EQ(mistake(withSetting("omega b,0.078\nOmega B,0.078")), "7: \"Omega B\" is already in line 6");
}

TEST(DefinitionMistakes, Parameters) {
    EXPECT_EQ(mistake(withParameter("methane,ethan,0.1")), "7: \"ethan\" is not in the table of compounds");
    EXPECT_EQ(mistake(withParameter("methane")), "7: \"\" is not in the table of compounds");
    EXPECT_EQ(mistake(withParameter("methane,Methane,0.1")),
              "7: a compound has no binary parameter with itself");
    EXPECT_EQ(mistake(withParameter("methane,ethane,0.1\nethane,methane,0.1")),
              "8: the parameter of \"ethane\" and \"methane\" is already in line 7");
    EXPECT_EQ(mistake(withParameter("methane,ethane,")), "7: the binary parameter \"\" is not a number");
    EXPECT_EQ(mistake(withParameter("methane,ethane,1.5")),
              "7: the binary parameter must be between -2 and 1, not 1.5");
    EXPECT_EQ(mistake(withParameter("methane,ethane,0,1")),
              "7: the line has 4 cells, but the table has 3 columns; write numbers with a decimal point and "
              "put texts "
              "with a separator in quotes");
    EXPECT_EQ(mistake(definition("[binary parameters]\ncompound 1,compound 2,kij\n")),
              "6: the column \"kij\" is unknown");
    EXPECT_EQ(mistake(definition("[binary parameters]\ncompound 1,k\n")),
              "6: the column \"compound 2\" is missing");
}

TEST(DefinitionMistakes, HugeFiles) {
    EXPECT_EQ(mistake(std::string(largestDefinition + 1, '\n')), "0: the file is larger than 1 MB");
    EXPECT_EQ(mistake(std::string(largestDefinition, '\n')), "0: the file has no section [compounds]");
    std::string many = "[compounds]\n" + header;
    for (int i = 0; i < 300; ++i) {
        many.append("c").append(std::to_string(i)).append(",,,16,190,4599200,0.01,,36\n");
    }
    EXPECT_EQ(mistake(many), "203: there are more than 200 compounds");
}

TEST(DefinitionMistakes, DamagedFilesAreReadOrRefused) {
    const std::string whole =
        "[package]\ngas constant,8.314\n" +
        definition("[binary parameters]\ncompound 1,compound 2,k\nmethane,ethane,0.1\n");
    ASSERT_EQ(mistake(whole), "");
    std::mt19937 random{20240608};
    int refused = 0;
    for (int i = 0; i < 5000; ++i) {
        std::string damaged = whole;
        for (auto changes = 1 + random() % 5; changes > 0; --changes) {
            const std::size_t place = random() % damaged.size();
            switch (random() % 3) {
            case 0:
                damaged[place] = static_cast<char>(random());
                break;
            case 1:
                damaged.erase(place, 1 + random() % 20);
                break;
            default:
                damaged.insert(place, 1, ",;\"[]\n0-.e"[random() % 10]);
            }
        }
        refused += mistake(damaged).empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 2500);
}

} // namespace
} // namespace peng_robinson::test
