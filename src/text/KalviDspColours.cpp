#include "text/KalviDspColours.h"

namespace vlk {

namespace {

consteval int hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    throw "not a hexadecimal digit";
}

consteval float component(const char* text, int offset)
{
    return static_cast<float>(hexDigit(text[offset]) * 16 + hexDigit(text[offset + 1])) * (1.0f / 255.0f);
}

// "0xAARRGGBB"; the alpha pair is ignored. Evaluated by the compiler, so the table is complete before any
// start-up code of another file can read it, and a mistyped text does not build.
consteval Colour colourFromText(const char* text)
{
    return Colour{component(text, 4), component(text, 6), component(text, 8)};
}

} // namespace

namespace Colours {

const Colour aliceBlue = colourFromText("0xfff0f8ff");
const Colour antiqueWhite = colourFromText("0xfffaebd7");
const Colour aqua = colourFromText("0xff00ffff");
const Colour aquamarine = colourFromText("0xff7fffd4");
const Colour azure = colourFromText("0xfff0ffff");
const Colour beige = colourFromText("0xfff5f5dc");
const Colour bisque = colourFromText("0xffffe4c4");
const Colour black = colourFromText("0xff000000");
const Colour blanchedAlmond = colourFromText("0xffffebcd");
const Colour blue = colourFromText("0xff0000ff");
const Colour blueViolet = colourFromText("0xff8a2be2");
const Colour brown = colourFromText("0xffa52a2a");
const Colour burlyWood = colourFromText("0xffdeb887");
const Colour cadetBlue = colourFromText("0xff5f9ea0");
const Colour chartreuse = colourFromText("0xff7fff00");
const Colour chocolate = colourFromText("0xffd2691e");
const Colour coral = colourFromText("0xffff7f50");
const Colour cornflowerBlue = colourFromText("0xff6495ed");
const Colour cornsilk = colourFromText("0xfffff8dc");
const Colour crimson = colourFromText("0xffdc143c");
const Colour cyan = colourFromText("0xff00ffff");
const Colour darkBlue = colourFromText("0xff00008b");
const Colour darkCyan = colourFromText("0xff008b8b");
const Colour darkGoldenRod = colourFromText("0xffb8860b");
const Colour darkGray = colourFromText("0xff555555");
const Colour darkGreen = colourFromText("0xff006400");
const Colour darkGrey = colourFromText("0xff555555");
const Colour darkKhaki = colourFromText("0xffbdb76b");
const Colour darkMagenta = colourFromText("0xff8b008b");
const Colour darkOliveGreen = colourFromText("0xff556b2f");
const Colour darkOrange = colourFromText("0xffff8c00");
const Colour darkOrchid = colourFromText("0xff9932cc");
const Colour darkRed = colourFromText("0xff8b0000");
const Colour darkSalmon = colourFromText("0xffe9967a");
const Colour darkSeaGreen = colourFromText("0xff8fbc8f");
const Colour darkSlateBlue = colourFromText("0xff483d8b");
const Colour darkSlateGray = colourFromText("0xff2f4f4f");
const Colour darkSlateGrey = colourFromText("0xff2f4f4f");
const Colour darkTurquoise = colourFromText("0xff00ced1");
const Colour darkViolet = colourFromText("0xff9400d3");
const Colour deepPink = colourFromText("0xffff1493");
const Colour deepSkyBlue = colourFromText("0xff00bfff");
const Colour dimGray = colourFromText("0xff696969");
const Colour dimGrey = colourFromText("0xff696969");
const Colour dodgerBlue = colourFromText("0xff1e90ff");
const Colour fireBrick = colourFromText("0xffb22222");
const Colour floralWhite = colourFromText("0xfffffaf0");
const Colour forestGreen = colourFromText("0xff228b22");
const Colour fuchsia = colourFromText("0xffff00ff");
const Colour gainsboro = colourFromText("0xffdcdcdc");
const Colour ghostWhite = colourFromText("0xfff8f8ff");
const Colour gold = colourFromText("0xffffd700");
const Colour goldenRod = colourFromText("0xffdaa520");
const Colour gray = colourFromText("0xff808080");
const Colour green = colourFromText("0xff008000");
const Colour greenYellow = colourFromText("0xffadff2f");
const Colour grey = colourFromText("0xff808080");
const Colour honeyDew = colourFromText("0xfff0fff0");
const Colour hotPink = colourFromText("0xffff69b4");
const Colour indianRed = colourFromText("0xffcd5c5c");
const Colour indigo = colourFromText("0xff4b0082");
const Colour ivory = colourFromText("0xfffffff0");
const Colour khaki = colourFromText("0xfff0e68c");
const Colour lavender = colourFromText("0xffe6e6fa");
const Colour lavenderBlush = colourFromText("0xfffff0f5");
const Colour lawnGreen = colourFromText("0xff7cfc00");
const Colour lemonChiffon = colourFromText("0xfffffacd");
const Colour lightBlue = colourFromText("0xffadd8e6");
const Colour lightCoral = colourFromText("0xfff08080");
const Colour lightCyan = colourFromText("0xffe0ffff");
const Colour lightGoldenRodYellow = colourFromText("0xfffafad2");
const Colour lightGray = colourFromText("0xffd3d3d3");
const Colour lightGreen = colourFromText("0xff90ee90");
const Colour lightGrey = colourFromText("0xffd3d3d3");
const Colour lightPink = colourFromText("0xffffb6c1");
const Colour lightSalmon = colourFromText("0xffffa07a");
const Colour lightSeaGreen = colourFromText("0xff20b2aa");
const Colour lightSkyBlue = colourFromText("0xff87cefa");
const Colour lightSlateGray = colourFromText("0xff778899");
const Colour lightSlateGrey = colourFromText("0xff778899");
const Colour lightSteelBlue = colourFromText("0xffb0c4de");
const Colour lightYellow = colourFromText("0xffffffe0");
const Colour lime = colourFromText("0xff00ff00");
const Colour limeGreen = colourFromText("0xff32cd32");
const Colour linen = colourFromText("0xfffaf0e6");
const Colour magenta = colourFromText("0xffff00ff");
const Colour maroon = colourFromText("0xff800000");
const Colour mediumAquamarine = colourFromText("0xff66cdaa");
const Colour mediumBlue = colourFromText("0xff0000cd");
const Colour mediumOrchid = colourFromText("0xffba55d3");
const Colour mediumPurple = colourFromText("0xff9370db");
const Colour mediumSeaGreen = colourFromText("0xff3cb371");
const Colour mediumSlateBlue = colourFromText("0xff7b68ee");
const Colour mediumSpringGreen = colourFromText("0xff00fa9a");
const Colour mediumTurquoise = colourFromText("0xff48d1cc");
const Colour mediumVioletRed = colourFromText("0xffc71585");
const Colour midnightBlue = colourFromText("0xff191970");
const Colour mintCream = colourFromText("0xfff5fffa");
const Colour mistyRose = colourFromText("0xffffe4e1");
const Colour moccasin = colourFromText("0xffffe4b5");
const Colour navajoWhite = colourFromText("0xffffdead");
const Colour navy = colourFromText("0xff000080");
const Colour oldLace = colourFromText("0xfffdf5e6");
const Colour olive = colourFromText("0xff808000");
const Colour oliveDrab = colourFromText("0xff6b8e23");
const Colour orange = colourFromText("0xffffa500");
const Colour orangeRed = colourFromText("0xffff4500");
const Colour orchid = colourFromText("0xffda70d6");
const Colour paleGoldenRod = colourFromText("0xffeee8aa");
const Colour paleGreen = colourFromText("0xff98fb98");
const Colour paleTurquoise = colourFromText("0xffafeeee");
const Colour paleVioletRed = colourFromText("0xffdb7093");
const Colour papayaWhip = colourFromText("0xffffefd5");
const Colour peachPuff = colourFromText("0xffffdab9");
const Colour peru = colourFromText("0xffcd853f");
const Colour pink = colourFromText("0xffffc0cb");
const Colour plum = colourFromText("0xffdda0dd");
const Colour powderBlue = colourFromText("0xffb0e0e6");
const Colour purple = colourFromText("0xff800080");
const Colour red = colourFromText("0xffff0000");
const Colour rosyBrown = colourFromText("0xffbc8f8f");
const Colour royalBlue = colourFromText("0xff4169e1");
const Colour saddleBrown = colourFromText("0xff8b4513");
const Colour salmon = colourFromText("0xfffa8072");
const Colour sandyBrown = colourFromText("0xfff4a460");
const Colour seaGreen = colourFromText("0xff2e8b57");
const Colour seaShell = colourFromText("0xfffff5ee");
const Colour sienna = colourFromText("0xffa0522d");
const Colour silver = colourFromText("0xffc0c0c0");
const Colour skyBlue = colourFromText("0xff87ceeb");
const Colour slateBlue = colourFromText("0xff6a5acd");
const Colour slateGray = colourFromText("0xff708090");
const Colour slateGrey = colourFromText("0xff708090");
const Colour snow = colourFromText("0xfffffafa");
const Colour springGreen = colourFromText("0xff00ff7f");
const Colour steelBlue = colourFromText("0xff4682b4");
const Colour tan = colourFromText("0xffd2b48c");
const Colour teal = colourFromText("0xff008080");
const Colour thistle = colourFromText("0xffd8bfd8");
const Colour tomato = colourFromText("0xffff6347");
const Colour turquoise = colourFromText("0xff40e0d0");
const Colour violet = colourFromText("0xffee82ee");
const Colour wheat = colourFromText("0xfff5deb3");
const Colour white = colourFromText("0xffffffff");
const Colour whiteSmoke = colourFromText("0xfff5f5f5");
const Colour yellow = colourFromText("0xffffff00");
const Colour yellowGreen = colourFromText("0xff9acd32");

const Colour defaultColour = colourFromText("0xff000000");

} // namespace Colours

} // namespace vlk
