function cpu_dump(d,a,b){cpu_read(d,0x4000,16);try{cpu_write(d,0x2000,1,0x3000,0,5);}catch(e){}try{cpu_read(d,0,-1);}catch(e){throw e;}cpu_read(null,0,1);}
function save_dump(d,a,b){ram_read(d,0,a);}
function save_write(d,a,b){ram_write(d,0,256);try{ram_erase();}catch(e){}ram_write(d,1.5,b);}
function cpu_erase(d,a,w){cpu_write(d,0x555,0xAA);}
function cpu_flash(d,a,b){rom_flash_cfg(d,1);for(local p=0;p<a;p+=480)rom_write(d,p,480);}