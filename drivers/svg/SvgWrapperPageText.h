// The HTML page that shows an SVG file in an object element beside one check box per layer
// group, with "All Off" and "All On".
#pragma once

#include <string>
#include <vector>

// stem: the SVG file's name without ".svg", relative to the page (the title as it stands, the
// object's address "{stem}.svg" percent-encoded); idPrefix: "layer_" and the
// id postfix with its "_" when one is used; layerNames: the run's layer names, whose "\U+XXXX"
// escapes become numeric character references.
std::string WrapperPageText(const std::string& stem, const std::string& idPrefix,
                            const std::vector<std::wstring>& layerNames);
