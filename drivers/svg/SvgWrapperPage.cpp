// The HTML page written beside an SVG file: the SVG in an object element and a check box per
// layer group of the run.
#include <fstream>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgWrapperPageText.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

void DRAWSVG::WriteWrapperPage() {
  // Without an SVG file the page would show nothing; with several it shows the first, the one
  // under the output name.
  if (m_filesWritten == 0) return;
  const OdString& stem = m_firstFileStem;
  std::string pagePath;
  OdStringToUtf8(pagePath, m_wrapperPageName.isEmpty() ? stem + L".htm" : m_wrapperPageName);
  std::ofstream page(pagePath, std::ios::out | std::ios::trunc | std::ios::binary);
  if (!page) {
    PrintMessage("Output File Open Error");
    PrintMessage("File May Be In Use By Another Program");
    return;
  }
  // The page lies beside the SVG file: it names the file without its directory.
  std::string stemText;
  OdStringToUtf8(stemText, stem.mid(LastSeparator(stem) + 1));
  page << WrapperPageText(stemText, "layer_" + m_idPostfix, m_writtenLayerIds);
  if (!page.flush()) TraceMessage("Error in WriteWrapperPage");
}
