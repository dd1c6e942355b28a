/* Data generated with rastermill 0.1.0 */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : Newfile.bmp */
/* Word width format is 16 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint16_t  NewBitmap [16] PROGMEM = {

 0xFFFF , 0xFFFF , 0x8800 , 0x0001 , 0x8080 , 0x0001 , 0x8008 , 0x0001 , 0x8000 , 0x8001 , 0x8000 , 0x0801 , 0x8000 , 0x0081 , 0xFFFF , 0xFFFF
};

const uint8_t  NewBitmapWidthPages = 4 ;

const uint8_t  NewBitmapHeightPixels = 8 ;

/*****************/
/* 16 Words */
/* End of LCD Pattern           */

/* Save table and see info file NewBitmap.rtf */

