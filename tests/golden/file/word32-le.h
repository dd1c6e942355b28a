/* Data generated with rastermill 0.1.0 */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : Newfile.bmp */
/* Word width format is 32 bit / Little endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint32_t  NewBitmap [4] PROGMEM = {

 0xFFFFFFFF,        /*  ################################  */
 0x80000101,        /*  #______________________#_______#  */
 0x80010001,        /*  #______________#_______________#  */
 0xFFFFFFFF        /*  ################################  */
};

const uint8_t  NewBitmapWidthPages = 4 ;

const uint8_t  NewBitmapHeightPixels = 4 ;

/*****************/
/* 4 Words */
/* End of LCD Pattern           */

/* Save table and see info file NewBitmap.rtf */

