// The CSV layer list: its file name, its layer lines with the visibility the drawing gave each
// layer, and the closed shapes of model space with their areas.
#include <gtest/gtest.h>

#include <string>

#include "converter/CDm2017.h"
#include "converter/CsvLayerList.h"
#include "tests/converter/ConverterTestSupport.h"

using namespace converter_test;

namespace {

// Units in metres; "Walls" frozen but on, "Doors, old" off; a 10 x 20 rectangle on "Rooms", a
// circle of radius 1 made of two bulged vertices on "Walls", an open polyline on "Doors, old"
// and a closed 3D polyline, neither of them a shape.
const char kShapes[] =
    "0\nSECTION\n2\nHEADER\n9\n$INSUNITS\n70\n6\n0\nENDSEC\n"
    "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n"
    "0\nLAYER\n2\nWalls\n70\n1\n62\n1\n"
    "0\nLAYER\n2\nDoors, old\n70\n0\n62\n-3\n"
    "0\nLAYER\n2\nRooms\n70\n0\n62\n5\n"
    "0\nENDTAB\n0\nENDSEC\n"
    "0\nSECTION\n2\nENTITIES\n"
    "0\nLWPOLYLINE\n5\n1A\n8\nRooms\n90\n4\n70\n1\n10\n0\n20\n0\n10\n10\n20\n0\n10\n10\n20\n20\n10\n0\n20\n20\n"
    "0\nLWPOLYLINE\n5\n1B\n8\nWalls\n90\n2\n70\n1\n10\n0\n20\n0\n42\n1\n10\n2\n20\n0\n42\n1\n"
    "0\nLWPOLYLINE\n5\n1C\n8\nDoors, old\n90\n3\n70\n0\n10\n0\n20\n0\n10\n5\n20\n0\n10\n5\n20\n5\n"
    "0\nPOLYLINE\n5\n1D\n8\nRooms\n66\n1\n70\n9\n"
    "0\nVERTEX\n8\nRooms\n10\n0\n20\n0\n30\n0\n70\n32\n0\nVERTEX\n8\nRooms\n10\n4\n20\n0\n30\n1\n70\n32\n"
    "0\nVERTEX\n8\nRooms\n10\n4\n20\n4\n30\n2\n70\n32\n0\nSEQEND\n"
    "0\nENDSEC\n0\nEOF\n";

TEST(CsvLayerList, NameFollowsTheOutputUnlessOneIsGiven) {
  EXPECT_EQ(CsvListName(OdString(L"out/plan.svg"), OdString()).str(), L"out/plan.csv");
  EXPECT_EQ(CsvListName(OdString(L"out/plan.SVG"), OdString()).str(), L"out/plan.csv");
  EXPECT_EQ(CsvListName(OdString(L"out/plan"), OdString()).str(), L"out/plan.csv");
  EXPECT_EQ(CsvListName(OdString(L"out/plan.svg"), OdString(L"list.txt")).str(), L"list.txt");
}

TEST(CsvLayerList, LayersThenClosedShapesWithTheirLayersVisibility) {
  Scratch scratch;
  CDm2017 converter;
  converter.SetOutputFile(Wide(scratch.file("plan \xC3\xA9.svg")));
  {
    CapturedOutput quiet;
    ASSERT_EQ(converter.ReadInputFile(Wide(scratch.write("shapes.dxf", kShapes))), 0);
  }
  ASSERT_NE(g_pDb, nullptr);
  const std::string expected =
      "L,1,Walls,0,1,hidden\n"
      "L,3,\"Doors, old\",0,1,hidden\n"
      "L,5,Rooms,0,1,visible\n"
      "L,7,0,0,1,visible\n"
      "P,1A,Rooms,200.000,4,visible\n"
      "P,1B,Walls,3.142,2,hidden\n";
  EXPECT_EQ(CsvListText(*g_pDb), expected);

  converter.WriteCSVLayerList(converter.GetOutputFile());
  EXPECT_EQ(Slurp(scratch.file("plan \xC3\xA9.csv")), expected);
  // A name that cannot be opened gives no file and no message.
  CapturedOutput out;
  converter.WriteCSVLayerList(Wide(scratch.file("missing/plan.svg")));
  EXPECT_EQ(out.text(), "");
  EXPECT_FALSE(fs::exists(scratch.file("missing/plan.csv")));
}

}  // namespace
