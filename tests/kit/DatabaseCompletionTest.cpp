// completeDatabase is the contract between every reader and the rest of the kit: whatever a
// reader left unset, a completed database has standard records, handles, layouts and links.
#include <gtest/gtest.h>

#include "kit/db/DatabaseCompletion.h"
#include "kit/db/OdDbDatabase.h"

TEST(DatabaseCompletion, FillsWhatAReaderLeftUnset) {
  OdDbDatabase db;
  BlockRecord* model = db.blockNamed("*Model_Space");
  auto* text = db.newObject<TextEntity>();
  auto* dimension = db.newObject<DimensionEntity>();
  auto* orphan = db.newObject<BlockReferenceEntity>();  // no block: cannot be drawn
  for (Entity* e : std::initializer_list<Entity*>{text, dimension, orphan}) {
    model->entities.push_back(e);
    db.adoptHandle(e);
  }
  completeDatabase(db);

  ASSERT_EQ(model->entities.size(), 2u);
  EXPECT_EQ(text->layer, db.layerZero());
  EXPECT_EQ(text->linetype, db.linetypeByLayer());
  EXPECT_EQ(text->style, db.textStyles().find("Standard"));
  EXPECT_EQ(dimension->style, db.dimStyles().find("Standard"));
  EXPECT_EQ(text->ownerHandle, model->handle);
  EXPECT_FALSE(text->handle.isNull());
  EXPECT_NE(text->handle, dimension->handle);
  EXPECT_EQ(db.find(model->handle), model);
  ASSERT_EQ(db.layouts().size(), 2u);
  EXPECT_EQ(db.layoutOfBlock(model)->name, "Model");
  EXPECT_TRUE(db.namedObjectsDictionary());
  EXPECT_GT(db.header().handSeed.value(), text->handle.value());
}

TEST(DatabaseCompletion, KeepsHandlesAReaderGave) {
  OdDbDatabase db;
  LayerRecord* layer = db.newObject<LayerRecord>();
  layer->name.push_back('A');
  layer->handle = OdDbHandle(0x77);
  db.layers().add(layer);
  db.adoptHandle(layer);
  completeDatabase(db);
  EXPECT_EQ(layer->handle, OdDbHandle(0x77));
  EXPECT_EQ(db.find(OdDbHandle(0x77)), layer);
  EXPECT_TRUE(layer->linetype);  // continuous
}
