#include "tests/end_to_end/XmlTexts.h"

#include <memory>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

namespace larkspan::test {

std::vector<std::string> inXml(const std::filesystem::path &file, const char *path)
{
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET),
                                                                  xmlFreeDoc);
    if (!document) {
        ADD_FAILURE() << file << " is not well-formed";
        return {};
    }
    const std::unique_ptr<xmlXPathContext, decltype(&xmlXPathFreeContext)> context(xmlXPathNewContext(document.get()),
                                                                                   xmlXPathFreeContext);
    const std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)> found(
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar *>(path), context.get()), xmlXPathFreeObject);
    std::vector<std::string> texts;
    for (int i = 0; found && found->nodesetval && i < found->nodesetval->nodeNr; ++i) {
        xmlChar *text = xmlNodeGetContent(found->nodesetval->nodeTab[i]);
        texts.emplace_back(reinterpret_cast<const char *>(text));
        xmlFree(text);
    }
    return texts;
}

} // namespace larkspan::test
