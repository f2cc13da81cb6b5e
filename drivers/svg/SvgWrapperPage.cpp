// The HTML page written beside an SVG file: the SVG in an object element and a check box per
// layer group of the run.
#include <fstream>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgWrapperPageText.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

void DRAWSVG::WriteWrapperPage() {
  // The stem ends at the last "." of the file name, not of a directory.
  OdString stem = m_outputFileName;
  int dot = stem.reverseFind(L'.');
  if (dot > LastSeparator(stem)) stem = stem.left(dot);
  std::string stemText;
  OdStringToUtf8(stemText, stem);
  std::ofstream page(stemText + ".htm", std::ios::out | std::ios::trunc | std::ios::binary);
  if (!page) {
    PrintMessage("Output File Open Error");
    PrintMessage("File May Be In Use By Another Program");
    return;
  }
  page << WrapperPageText(stemText, "layer_" + m_idPostfix, m_writtenLayerIds);
  if (!page.flush()) TraceMessage("Error in WriteWrapperPage");
}
