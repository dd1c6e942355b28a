/* Data generated with rastermill 0.1.0 */
/* Animated Sequence Part # 1 of 3  */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : bar.gif */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  bar_1 [16] PROGMEM = {

 0x00 , 0x00 , 0x00 , 0x00 , 0x80 , 0x00 , 0x80 , 0x00 , 0x80 , 0x00 , 0x80 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00
};

const uint8_t  barWidthPages = 2 ;

const uint8_t  barHeightPixels = 8 ;

/*****************/
/* 16 Bytes */
/* End of LCD Pattern           */

/* Save table and see info file bar.rtf */

/* Data generated with rastermill 0.1.0 */
/* Animated Sequence Part # 2 of 3  */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : bar.gif */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  bar_2 [16] PROGMEM = {

 0x00 , 0x00 , 0x00 , 0x00 , 0xF8 , 0x00 , 0xF8 , 0x00 , 0xF8 , 0x00 , 0xF8 , 0x00 , 0x00 , 0x00 , 0x00 , 0x00
};

const uint8_t  barWidthPages = 2 ;

const uint8_t  barHeightPixels = 8 ;

/*****************/
/* 16 Bytes */
/* End of LCD Pattern           */

/* Save table and see info file bar.rtf */

/* Data generated with rastermill 0.1.0 */
/* Animated Sequence Part # 3 of 3  */
/* 14/11/2023 22:13:20 */
/* Bitmap Source file : bar.gif */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  bar_3 [16] PROGMEM = {

 0x00 , 0x00 , 0x00 , 0x00 , 0xFD , 0x00 , 0xFD , 0x00 , 0xFD , 0x00 , 0xFD , 0x00 , 0x00 , 0x00 , 0x00 , 0x00
};

const uint8_t  barWidthPages = 2 ;

const uint8_t  barHeightPixels = 8 ;

/*****************/
/* 16 Bytes */
/* End of LCD Pattern           */

/* Save table and see info file bar.rtf */

