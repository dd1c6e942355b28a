/* Data generated with rastermill 0.1.0 */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : Newfile.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [16] PROGMEM = {

 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00
};

const uint8_t  NewBitmap_P2 [16] PROGMEM = {
 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00
};

const uint8_t  NewBitmapWidthPages = 4 ;

const uint8_t  NewBitmapHeightPixels = 8 ;

/*****************/
/* 32 Bytes */
/* End of LCD Pattern           */

/* Save table and see info file NewBitmap.rtf */

