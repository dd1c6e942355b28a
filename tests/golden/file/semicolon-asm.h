 ; Data generated with rastermill 0.1.0
 ; 14/11/2023 22:13:20
 ; Bitmap Source file : Newfile.bmp
 ; Byte width format is 8 bit / Big endian

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [16] PROGMEM = {

  .db FFh, FFh , A0h , 01h , 88h , 01h , 82h , 01h , 80h , 81h , 80h , 21h , 80h , 09h , FFh , FFh 
};

const uint8_t  NewBitmapWidthPages = 2 ;

const uint8_t  NewBitmapHeightPixels = 8 ;

 ; ******************
 ;16 Bytes 
 ;  End of LCD Pattern  

 ;  Save table and see info file NewBitmap.rtf

