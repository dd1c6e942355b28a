/* Data generated with rastermill 0.1.0 */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : Newfile.bmp */
/* Word width format is 16 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint16_t  NewBitmap [8] PROGMEM = {

 0xFFFF , 0xFFFF , 0xFFFF , 0xFFFF , 0xFFFF , 0xFFFF , 0xFFFF , 0xFFFF 
};

const uint8_t  NewBitmapWidthPages = 4 ;

const uint8_t  NewBitmapHeightPixels = 2 ;

/*****************/
/* 8 Words */
/* End of LCD Pattern           */

/* Save table and see info file NewBitmap.rtf */

