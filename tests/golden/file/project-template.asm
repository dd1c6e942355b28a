//** kept above everything
 ; Data generated with rastermill 0.1.0
 ; 14/11/2023 22:13:20
 ; Bitmap Source file : Newfile.bmp
 ; Byte width format is 8 bit / Big endian

;  NewBitmap  for the assembler
[&NAME]:  ;  0  0

 FFh, FFh , 88h , 01h , 80h , 81h , FFh , FFh 

;  NewBitmapWidthPages = 2 ;

;  NewBitmapHeightPixels = 4 ;

 ; ******************
 ;8 Bytes 
 ;  End of LCD Pattern  

 ;  Save table and see info file NewBitmap.rtf

