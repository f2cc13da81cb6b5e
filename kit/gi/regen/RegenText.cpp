// TEXT, ATTRIB and ATTDEF: one placed run of text handed to the conveyor's textProc.
#include "kit/gi/StrokeFont.h"
#include "kit/gi/TextCodes.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/TextPlacement.h"

namespace gi {

namespace {

void drawTextRun(GiRegenContext& ctx, const TextData& text, const std::string& content) {
  if (content.empty()) return;
  const TextStyleRecord* style = text.style;
  double defaultHeight = style && style->fixedHeight > 0.0 ? style->fixedHeight : ctx.database().header().textSize;
  double defaultWidth = style && style->widthFactor > 0.0 ? style->widthFactor : 1.0;
  OdGiTextStyle giStyle = ctx.textStyleOf(style, defaultHeight, defaultWidth, text.oblique);
  std::u32string chars;
  for (const DecodedChar& c : decodeTextCodes(utf8ToU32(content), false)) chars += c.ch;
  TextRun run = placeText(text, measureText(giStyle, chars), defaultHeight, defaultWidth, textDescent(giStyle));
  if (!(run.height > 0.0)) return;
  giStyle.setTextSize(run.height);
  giStyle.setXScale(run.widthFactor);
  giStyle.setBackward((text.generationFlags & TextData::kMirroredX) != 0);
  giStyle.setUpsideDown((text.generationFlags & TextData::kMirroredY) != 0);
  OdString wide = toOdString(content);
  ctx.geometry().textProc(run.start, run.direction, run.up, wide.c_str(), wide.getLength(), false, &giStyle);
}

}  // namespace

void regenText(GiRegenContext& ctx, const TextData& text) { drawTextRun(ctx, text, text.text); }

void regenAttribute(GiRegenContext& ctx, const AttributeEntity& e) {
  if (e.isInvisible()) return;
  if (e.multiline) {
    regenMText(ctx, *e.multiline);
    return;
  }
  drawTextRun(ctx, e, e.text);
}

void regenAttributeDefinition(GiRegenContext& ctx, const AttributeDefinitionEntity& e) {
  // Inside a block only constant attributes show (with their value); elsewhere the tag shows.
  if (ctx.blockDepth() > 0) {
    if (!e.isConstant() || e.isInvisible()) return;
    if (e.multiline) regenMText(ctx, *e.multiline);
    else drawTextRun(ctx, e, e.text);
    return;
  }
  drawTextRun(ctx, e, e.tag);
}

}  // namespace gi
