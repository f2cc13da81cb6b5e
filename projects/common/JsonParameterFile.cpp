// The JSON parameter file: general settings, block attribute records, layer states and
// variables. The value of "JSON" is either the JSON text itself or the name of a file holding it.
#include <iostream>
#include <string>

#include <rapidjson/document.h>

#include "projects/common/CommonRoutines.h"
#include "projects/common/ParseCommandLine.h"
#include "services/Trace.h"

namespace {

using JsonValue = rapidjson::Value;

// A member looked up without regard to case; null when absent.
const JsonValue* findMember(const JsonValue& object, const char* name) {
  for (auto it = object.MemberBegin(); it != object.MemberEnd(); ++it)
    if (EqualsNoCase(it->name.GetString(), name)) return &it->value;
  return nullptr;
}

const char* stringMember(const JsonValue& object, const char* name) {
  const JsonValue* value = findMember(object, name);
  return value && value->IsString() ? value->GetString() : nullptr;
}

OdString wide(const char* utf8) {
  OdString out;
  Utf8ToOdString(out, OdAnsiString(utf8));
  return out;
}

// An entry of the wrong type is left out with one line naming it; the rest of the file still
// counts, as does the run.
bool hasType(bool ok, const std::string& where, const char* expected) {
  if (!ok) PrintMessage("JSON Parameter Ignored", (where + " is not " + expected).c_str());
  return ok;
}

std::string indexed(const std::string& where, rapidjson::SizeType index) {
  return where + "[" + std::to_string(index) + "]";
}

void appendLayer(OdString& list, const OdString& name) {
  if (!list.isEmpty()) list += L';';
  list += name;
}

// A whole list given at once: a ";"-separated text or an array of names.
bool readLayerList(const JsonValue& value, OdString& list, const std::string& where) {
  if (value.IsString()) {
    list = wide(value.GetString());
    return true;
  }
  if (!value.IsArray()) return false;
  list.empty();
  for (rapidjson::SizeType i = 0; i < value.Size(); ++i)
    if (hasType(value[i].IsString(), indexed(where, i), "a text")) appendLayer(list, wide(value[i].GetString()));
  return true;
}

// The text to parse: the value itself when it is JSON, otherwise the first object in the named file.
bool jsonText(const std::string& value, std::string& text) {
  if (!value.empty() && (value[0] == '[' || value[0] == '{')) {
    text = value;
  } else {
    std::string content;
    ReadWholeFile(value, content);
    if (!ExtractJsonObject(content, text)) return false;
  }
  Trim(text);
  // Windows paths are written with single backslashes.
  ReplaceAll(text, "\\", "\\\\");
  return true;
}

}  // namespace

struct JsonParameterReader {
  static void ReadGeneral(CParseCommandLine& p, const JsonValue& general);
  static void ReadBlocks(CParseCommandLine& p, const JsonValue& blocks);
  static void ReadBlock(CParseCommandLine& p, const JsonValue& blockItem, rapidjson::SizeType index);
  static void ReadLayers(CParseCommandLine& p, const JsonValue& layers, const std::string& where);
  static void ReadLayerState(CParseCommandLine& p, const OdString& name, const char* state);
  static void ReadVariables(CParseCommandLine& p, const JsonValue& variables);
};

void CParseCommandLine::ReadJSONParameters() {
  std::string text;
  if (!jsonText(jsonFile, text)) return;
  rapidjson::Document document;
  // Iterative parsing: a deeply nested text must not exhaust the stack.
  document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
  if (document.HasParseError() || !document.IsObject()) return;
  if (const JsonValue* general = findMember(document, "General")) JsonParameterReader::ReadGeneral(*this, *general);
  if (const JsonValue* blocks = findMember(document, "Blocks")) JsonParameterReader::ReadBlocks(*this, *blocks);
  if (const JsonValue* layers = findMember(document, "Layers")) JsonParameterReader::ReadLayers(*this, *layers, "Layers");
  if (const JsonValue* variables = findMember(document, "Variables"))
    JsonParameterReader::ReadVariables(*this, *variables);
}

// Paths read here are taken as written: no separator is added as on the command line.
void JsonParameterReader::ReadGeneral(CParseCommandLine& p, const JsonValue& general) {
  if (!hasType(general.IsObject(), "General", "an object")) return;
  for (auto it = general.MemberBegin(); it != general.MemberEnd(); ++it) {
    const std::string name = it->name.GetString();
    if (!hasType(it->value.IsString(), "General." + name, "a text")) continue;
    const OdString value = wide(it->value.GetString());
    if (EqualsNoCase(name, "InputFile")) p.inputFile = value;
    else if (EqualsNoCase(name, "OutputFile")) p.outputFile = value;
    else if (EqualsNoCase(name, "WorkspaceFile")) p.workspaceFile = value;
    else if (EqualsNoCase(name, "Fontpath")) p.fontPath = value;
    else if (EqualsNoCase(name, "XrefPath")) p.xrefPath = value;
    else if (EqualsNoCase(name, "ServerPath")) p.serverPath = value;
    else if (EqualsNoCase(name, "Layout")) p.layoutName = value;
    else if (EqualsNoCase(name, "View"))
      p.viewName = !value.isEmpty() && value.getAt(0) == L'*' ? value : OdString(L"*") + value + L"*";
    else if (EqualsNoCase(name, "Format")) {
      if (value.iCompare(L"SVG") == 0) {
        p.outputFormat = 1016;
        p.minLineWidth = 0.6;
      } else if (value.iCompare(L"PDF") == 0) {
        p.outputFormat = 1007;
      }
    }
  }
}

void JsonParameterReader::ReadBlocks(CParseCommandLine& p, const JsonValue& blocks) {
  if (!hasType(blocks.IsArray(), "Blocks", "an array")) return;
  for (rapidjson::SizeType i = 0; i < blocks.Size(); ++i)
    if (hasType(blocks[i].IsObject(), indexed("Blocks", i), "an object")) ReadBlock(p, blocks[i], i);
}

namespace {

// A text member of a block or attribute: null when absent or of another type (then reported).
const char* textMember(const JsonValue& object, const char* name, const std::string& where) {
  const JsonValue* value = findMember(object, name);
  if (!value || !hasType(value->IsString(), where + "." + name, "a text")) return nullptr;
  return value->GetString();
}

}  // namespace

void JsonParameterReader::ReadBlock(CParseCommandLine& p, const JsonValue& blockItem, rapidjson::SizeType index) {
  const std::string where = indexed("Blocks", index);
  WorkspaceBlockRecord record;
  if (const char* name = textMember(blockItem, "Blockname", where)) record.blockName = name;
  if (const char* handle = textMember(blockItem, "Handle", where)) record.handle = handle;
  const JsonValue* attributes = findMember(blockItem, "Attributes");
  if (attributes && hasType(attributes->IsArray(), where + ".Attributes", "an array")) {
    for (rapidjson::SizeType i = 0; i < attributes->Size(); ++i) {
      const JsonValue& attribute = (*attributes)[i];
      const std::string attributeWhere = indexed(where + ".Attributes", i);
      if (!hasType(attribute.IsObject(), attributeWhere, "an object")) continue;
      std::pair<std::string, std::string> pair;
      for (auto it = attribute.MemberBegin(); it != attribute.MemberEnd(); ++it) {
        const std::string member = it->name.GetString();
        const bool isTag = EqualsNoCase(member, "tag");
        if (!isTag && !EqualsNoCase(member, "value")) continue;
        if (!hasType(it->value.IsString(), attributeWhere + "." + member, "a text")) continue;
        std::cout << member << " : " << it->value.GetString() << '\n';
        (isTag ? pair.first : pair.second) = it->value.GetString();
      }
      record.attributes.push_back(pair);
    }
    std::cout.flush();
  }
  p.workspaceBlocks.push_back(record);
}

void JsonParameterReader::ReadLayerState(CParseCommandLine& p, const OdString& name, const char* state) {
  const std::string s = state;
  if (EqualsNoCase(s, "Off")) appendLayer(p.layersOff, name);
  else if (EqualsNoCase(s, "On")) appendLayer(p.layersOn, name);
  else if (EqualsNoCase(s, "RL")) appendLayer(p.rLayers, name);
  else if (EqualsNoCase(s, "TL")) appendLayer(p.tLayers, name);
}

// Either {"Wall": "Off", "Rooms": "RL"}, an array of such objects or of {"Name": ..., "State": ...},
// or {"Off": "A;B", "On": "C"} with whole lists.
void JsonParameterReader::ReadLayers(CParseCommandLine& p, const JsonValue& layers, const std::string& where) {
  if (layers.IsArray()) {
    for (rapidjson::SizeType i = 0; i < layers.Size(); ++i) {
      const JsonValue& item = layers[i];
      if (!hasType(item.IsObject(), indexed(where, i), "an object")) continue;
      const char* name = stringMember(item, "Name");
      if (!name) name = stringMember(item, "Layer");
      const char* state = stringMember(item, "State");
      if (name && state) ReadLayerState(p, wide(name), state);
      else ReadLayers(p, item, indexed(where, i));
    }
    return;
  }
  if (!hasType(layers.IsObject(), where, "an object or an array")) return;
  for (auto it = layers.MemberBegin(); it != layers.MemberEnd(); ++it) {
    const std::string name = it->name.GetString();
    if (EqualsNoCase(name, "Off") && readLayerList(it->value, p.layersOff, where + "." + name)) continue;
    if (EqualsNoCase(name, "On") && readLayerList(it->value, p.layersOn, where + "." + name)) continue;
    if (hasType(it->value.IsString(), where + "." + name, "a text"))
      ReadLayerState(p, wide(name.c_str()), it->value.GetString());
  }
}

void JsonParameterReader::ReadVariables(CParseCommandLine& p, const JsonValue& variables) {
  if (!hasType(variables.IsArray(), "Variables", "an array")) return;
  for (rapidjson::SizeType i = 0; i < variables.Size(); ++i) {
    const JsonValue& item = variables[i];
    const std::string where = indexed("Variables", i);
    if (!hasType(item.IsObject(), where, "an object")) continue;
    const char* prefix = textMember(item, "prefix", where);
    const char* value = textMember(item, "value", where);
    if (prefix && value) p.variables.push_back(ParameterVariable{prefix, value});
  }
}
