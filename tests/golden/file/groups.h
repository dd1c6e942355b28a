/* Data generated with rastermill 0.1.0 */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : Newfile.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [8] PROGMEM = {

{
{
 0xFF , 0xFF,
},
{
 0x88 , 0x01,
},
{
 0x80 , 0x81,
},
{
 0xFF , 0xFF
},
};

const uint8_t  NewBitmapWidthPages = 2 ;

const uint8_t  NewBitmapHeightPixels = 4 ;

/*****************/
/* 8 Bytes */
/* End of LCD Pattern           */

/* Save table and see info file NewBitmap.rtf */

