/* Data generated with rastermill 0.1.0 */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : Newfile.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [32] PROGMEM = {

 0xFF , 0xC0 , 0xA0 , 0x90 , 0x88 , 0x84 , 0x82 , 0x81 , 0x80 , 0x80 , 0x80 , 0x80 , 0x80 , 0x80 , 0x80 , 0xFF,
 0xFF , 0x01 , 0x01 , 0x01 , 0x01 , 0x01 , 0x01 , 0x01 , 0x81 , 0x41 , 0x21 , 0x11 , 0x09 , 0x05 , 0x03 , 0xFF
};

const uint8_t  NewBitmapWidthPixels = 16 ; // set by the project

const uint8_t  NewBitmapHeightPages = 2 ; // set by the project

const uint8_t  NewBitmapX = 0 ; // set by the project

const uint8_t  NewBitmapY = 0 ; // set by the project

/*****************/
/* 32 Bytes */
/* End of LCD Pattern           */

/* Save table and see info file NewBitmap.rtf */

