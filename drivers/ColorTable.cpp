// The driver's colour table: the 16 default entries, the built-in 256-entry palette, colour names,
// the SetColor rules and the lookup of a true colour.
#include <algorithm>
#include <string>

#include "drivers/TRANS_BASE2.h"
#include "services/Trace.h"

namespace {

DrvRgb rgb(int red, int green, int blue) {
  auto component = [](int v) { return static_cast<std::uint16_t>(std::clamp(v, 0, 255)); };
  return {component(red), component(green), component(blue)};
}

const DrvRgb kDefaultTable[16] = {
    {0, 0, 0},     {255, 255, 255}, {255, 0, 0},   {0, 255, 0},   {255, 255, 0}, {0, 0, 255},
    {255, 0, 255}, {0, 255, 255},   {192, 192, 192}, {128, 128, 128}, {128, 0, 128}, {0, 128, 0},
    {128, 0, 0},   {128, 128, 0},   {0, 0, 128},   {0, 128, 128}};

std::vector<DrvRgb> builtInPalette() {
  std::vector<DrvRgb> palette = {{0, 0, 0},     {128, 0, 0},     {0, 128, 0},     {128, 128, 0},
                                 {0, 0, 128},   {128, 0, 128},   {0, 128, 128},   {192, 192, 192},
                                 {192, 220, 192}, {166, 202, 240}};
  for (int r = 0; r < 6; ++r)
    for (int g = 0; g < 6; ++g)
      for (int b = 0; b < 6; ++b) palette.push_back(rgb(51 * r, 51 * g, 51 * b));
  for (int k = 0; k < 20; ++k) {
    int grey = 255 * k / 19;
    palette.push_back(rgb(grey, grey, grey));
  }
  const DrvRgb tail[10] = {{255, 251, 240}, {160, 160, 164}, {128, 128, 128}, {255, 0, 0},   {0, 255, 0},
                           {255, 255, 0},   {0, 0, 255},     {255, 0, 255},   {0, 255, 255}, {255, 255, 255}};
  palette.insert(palette.end(), tail, tail + 10);
  return palette;
}

// Greys for indices 250..255. The last value of the second row is lower than the one before it;
// the program has always drawn index 255 that way.
const int kGreyRowOn[6] = {51, 91, 132, 173, 214, 255};
const int kGreyRowOff[6] = {0, 45, 91, 137, 183, 179};

struct NamedColor {
  DrvRgb color;
  const char* name;
};

const NamedColor kNamedColors[8] = {{{0, 0, 0}, "black"},     {{255, 255, 255}, "white"}, {{255, 0, 0}, "red"},
                                    {{255, 255, 0}, "yellow"}, {{0, 255, 0}, "green"},     {{0, 255, 255}, "cyan"},
                                    {{0, 0, 255}, "blue"},     {{255, 0, 255}, "magenta"}};

}  // namespace

void TRANS_BASE2::FillDefaultColorTable() {
  m_colorTable.assign(kDefaultTable, kDefaultTable + 16);
  m_colorCount = 16;
}

const char* TRANS_BASE2::ColorName(int index) const {
  static std::string result;
  if (index < 0 || index >= static_cast<int>(m_colorTable.size())) {
    result = "black";
    return result.c_str();
  }
  const DrvRgb& entry = m_colorTable[static_cast<std::size_t>(index)];
  for (const auto& named : kNamedColors) {
    if (named.color == entry) {
      result = named.name;
      return result.c_str();
    }
  }
  result = "rgb(" + std::to_string(entry.red) + "," + std::to_string(entry.green) + "," +
           std::to_string(entry.blue) + ")";
  return result.c_str();
}

void TRANS_BASE2::SetPalette(int palette) {
  m_palette = palette;
  if (palette == 1000) LoadPalette(builtInPalette());
}

void TRANS_BASE2::LoadPalette(const std::vector<DrvRgb>& entries) {
  m_colorTable.clear();
  m_usedColors.clear();
  m_paletteWhite = -1;
  m_paletteBlack = -1;
  for (const DrvRgb& entry : entries) {
    int index = static_cast<int>(m_colorTable.size());
    m_colorTable.push_back(entry);
    if (m_paletteWhite < 0 && entry == DrvRgb{255, 255, 255}) m_paletteWhite = index;
    if (m_paletteBlack < 0 && entry == DrvRgb{0, 0, 0}) m_paletteBlack = index;
  }
  m_colorCount = static_cast<int>(m_colorTable.size());
  m_paletteLoaded = true;
  m_currentColor = m_paletteBlack;
  m_previousColor = m_paletteBlack;
}

void TRANS_BASE2::DefineColor(int index, int red, int green, int blue) {
  if (index < 0 || index > 255) return;
  if (index >= static_cast<int>(m_colorTable.size())) m_colorTable.resize(static_cast<std::size_t>(index) + 1);
  m_colorTable[static_cast<std::size_t>(index)] = rgb(red, green, blue);
  m_colorCount = static_cast<int>(m_colorTable.size());
}

void TRANS_BASE2::SelectColorDirect(int index) {
  if (index > 7) ++m_usedColors[index];
  m_currentColor = index;
  m_previousColor = index;
}

int TRANS_BASE2::FindOrAddColor(int red, int green, int blue) {
  DrvRgb wanted = rgb(red, green, blue);
  for (std::size_t i = 0; i < m_colorTable.size(); ++i)
    if (m_colorTable[i] == wanted) return static_cast<int>(i);
  m_colorTable.push_back(wanted);
  m_colorCount = static_cast<int>(m_colorTable.size());
  return m_colorCount - 1;
}

void TRANS_BASE2::SetColor(int index) {
  try {
    // White is drawn black on the white page.
    if (m_paletteLoaded && index == m_paletteWhite && m_paletteBlack >= 0) {
      SelectColorDirect(m_paletteBlack);
      return;
    }
    if (index == 7 && m_firstColor7Pending) {
      m_firstColor7Pending = false;
      if (m_colorTable.size() > 7) {
        const DrvRgb entry = m_colorTable[7];
        if (entry == DrvRgb{0, 0, 0}) index = FindOrAddColor(255, 255, 255);
        else if (entry == DrvRgb{255, 255, 255}) index = FindOrAddColor(0, 0, 0);
      }
      SelectColorDirect(index);
      return;
    }
    if (index >= 250 && index <= 255 && !m_firstColor7Pending) {
      if (index > 7) ++m_usedColors[index];
      int grey = (m_greyRow ? kGreyRowOn : kGreyRowOff)[index - 250];
      SelectColorDirect(FindOrAddColor(grey, grey, grey));
      return;
    }
    SelectColorDirect(index);
  } catch (...) {
    TraceMessage("Error in SetColor");
  }
}

// A colour index can stand for another colour than its entry (the palette's white drawn black, the
// first colour 7 turned, the grey rows): a true colour must not be found at such an index, or the
// page's white behind a text would come out grey.
bool TRANS_BASE2::SelectsOwnEntry(int index) const {
  if (m_paletteLoaded && index == m_paletteWhite && m_paletteBlack >= 0) return false;
  if (index == 7 && m_firstColor7Pending) return false;
  return !(index >= 250 && index <= 255 && !m_firstColor7Pending);
}

int TRANS_BASE2::SetColorRGB(int red, int green, int blue) {
  const DrvRgb wanted = rgb(red, green, blue);
  for (int i = 1; i < m_colorCount; ++i) {
    if (m_colorTable[static_cast<std::size_t>(i)] == wanted && SelectsOwnEntry(i)) {
      SetColor(i);
      return i;
    }
  }
  if (AcceptsTrueColors()) {
    m_colorTable.push_back(wanted);
    m_colorCount = static_cast<int>(m_colorTable.size());
    SetColor(m_colorCount - 1);
    return m_colorCount - 1;
  }
  if (m_colorCount <= 0) return -1;
  auto distance = [&wanted](const DrvRgb& c) {
    long dr = c.red - wanted.red, dg = c.green - wanted.green, db = c.blue - wanted.blue;
    return dr * dr + dg * dg + db * db;
  };
  int best = 0;
  long bestDistance = distance(m_colorTable[0]);
  for (int i = 1; i < m_colorCount; ++i) {
    if (!SelectsOwnEntry(i)) continue;
    long d = distance(m_colorTable[static_cast<std::size_t>(i)]);
    if (d < bestDistance) {
      best = i;
      bestDistance = d;
    }
  }
  SetColor(best);
  return best;
}
