// The section writers of one DXF file, in file order.
#pragma once

#include "kit/dxf/DxfWriterContext.h"

void writeHeaderSection(DxfWriterContext& c);   // DxfWriterHeader.cpp
void writeClassesSection(DxfWriterContext& c);  // DxfWriterHeader.cpp
void writeTablesSection(DxfWriterContext& c);   // DxfWriterTables.cpp
void writeBlocksSection(DxfWriterContext& c);   // DxfWriterBlocks.cpp
void writeEntitiesSection(DxfWriterContext& c); // DxfWriterBlocks.cpp
void writeObjectsSection(DxfWriterContext& c);  // DxfWriterObjects.cpp
