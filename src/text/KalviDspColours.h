#pragma once

namespace vlk {

// A colour as red, green and blue in 0 to 1.
struct Colour
{
    float red;
    float green;
    float blue;
};

// The SVG colour names in alphabetical order, both spellings of grey included. The library's vocabulary:
// nothing here looks a colour up.
namespace Colours {

extern const Colour aliceBlue;
extern const Colour antiqueWhite;
extern const Colour aqua;
extern const Colour aquamarine;
extern const Colour azure;
extern const Colour beige;
extern const Colour bisque;
extern const Colour black;
extern const Colour blanchedAlmond;
extern const Colour blue;
extern const Colour blueViolet;
extern const Colour brown;
extern const Colour burlyWood;
extern const Colour cadetBlue;
extern const Colour chartreuse;
extern const Colour chocolate;
extern const Colour coral;
extern const Colour cornflowerBlue;
extern const Colour cornsilk;
extern const Colour crimson;
extern const Colour cyan;
extern const Colour darkBlue;
extern const Colour darkCyan;
extern const Colour darkGoldenRod;
extern const Colour darkGray;
extern const Colour darkGreen;
extern const Colour darkGrey;
extern const Colour darkKhaki;
extern const Colour darkMagenta;
extern const Colour darkOliveGreen;
extern const Colour darkOrange;
extern const Colour darkOrchid;
extern const Colour darkRed;
extern const Colour darkSalmon;
extern const Colour darkSeaGreen;
extern const Colour darkSlateBlue;
extern const Colour darkSlateGray;
extern const Colour darkSlateGrey;
extern const Colour darkTurquoise;
extern const Colour darkViolet;
extern const Colour deepPink;
extern const Colour deepSkyBlue;
extern const Colour dimGray;
extern const Colour dimGrey;
extern const Colour dodgerBlue;
extern const Colour fireBrick;
extern const Colour floralWhite;
extern const Colour forestGreen;
extern const Colour fuchsia;
extern const Colour gainsboro;
extern const Colour ghostWhite;
extern const Colour gold;
extern const Colour goldenRod;
extern const Colour gray;
extern const Colour green;
extern const Colour greenYellow;
extern const Colour grey;
extern const Colour honeyDew;
extern const Colour hotPink;
extern const Colour indianRed;
extern const Colour indigo;
extern const Colour ivory;
extern const Colour khaki;
extern const Colour lavender;
extern const Colour lavenderBlush;
extern const Colour lawnGreen;
extern const Colour lemonChiffon;
extern const Colour lightBlue;
extern const Colour lightCoral;
extern const Colour lightCyan;
extern const Colour lightGoldenRodYellow;
extern const Colour lightGray;
extern const Colour lightGreen;
extern const Colour lightGrey;
extern const Colour lightPink;
extern const Colour lightSalmon;
extern const Colour lightSeaGreen;
extern const Colour lightSkyBlue;
extern const Colour lightSlateGray;
extern const Colour lightSlateGrey;
extern const Colour lightSteelBlue;
extern const Colour lightYellow;
extern const Colour lime;
extern const Colour limeGreen;
extern const Colour linen;
extern const Colour magenta;
extern const Colour maroon;
extern const Colour mediumAquamarine;
extern const Colour mediumBlue;
extern const Colour mediumOrchid;
extern const Colour mediumPurple;
extern const Colour mediumSeaGreen;
extern const Colour mediumSlateBlue;
extern const Colour mediumSpringGreen;
extern const Colour mediumTurquoise;
extern const Colour mediumVioletRed;
extern const Colour midnightBlue;
extern const Colour mintCream;
extern const Colour mistyRose;
extern const Colour moccasin;
extern const Colour navajoWhite;
extern const Colour navy;
extern const Colour oldLace;
extern const Colour olive;
extern const Colour oliveDrab;
extern const Colour orange;
extern const Colour orangeRed;
extern const Colour orchid;
extern const Colour paleGoldenRod;
extern const Colour paleGreen;
extern const Colour paleTurquoise;
extern const Colour paleVioletRed;
extern const Colour papayaWhip;
extern const Colour peachPuff;
extern const Colour peru;
extern const Colour pink;
extern const Colour plum;
extern const Colour powderBlue;
extern const Colour purple;
extern const Colour red;
extern const Colour rosyBrown;
extern const Colour royalBlue;
extern const Colour saddleBrown;
extern const Colour salmon;
extern const Colour sandyBrown;
extern const Colour seaGreen;
extern const Colour seaShell;
extern const Colour sienna;
extern const Colour silver;
extern const Colour skyBlue;
extern const Colour slateBlue;
extern const Colour slateGray;
extern const Colour slateGrey;
extern const Colour snow;
extern const Colour springGreen;
extern const Colour steelBlue;
extern const Colour tan;
extern const Colour teal;
extern const Colour thistle;
extern const Colour tomato;
extern const Colour turquoise;
extern const Colour violet;
extern const Colour wheat;
extern const Colour white;
extern const Colour whiteSmoke;
extern const Colour yellow;
extern const Colour yellowGreen;

// The colour of anything that was given none.
extern const Colour defaultColour;

} // namespace Colours

} // namespace vlk
