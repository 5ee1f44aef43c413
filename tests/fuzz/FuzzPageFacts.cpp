// Differential target: the facts the classic analysis reads of a page, read from the parser's
// events without a tree, must equal the facts read from the tree libxml2 builds of the same
// bytes. Any difference aborts with both readings.
//
// Input: the page's bytes.

#include "FuzzSupport.h"

#include "html/HTMLParser.h"
#include "html/PageFacts.h"
#include "html/PageFactsReader.h"

#include <QByteArray>

#include <libxml/parser.h>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    xmlInitParser();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray page(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    fuzz::runInput([&] {
        AppError error;
        const PageFacts tree = PageFacts::fromDocument(*HTMLParser::initWithData(page, &error));
        const PageFacts events = PageFactsReader::read(page);
        if (!(tree == events))
            fuzz::fail("the event reading differs from the tree reading",
                       QStringLiteral("tree:\n%1events:\n%2").arg(tree.description(), events.description()));
    });
    return 0;
}
