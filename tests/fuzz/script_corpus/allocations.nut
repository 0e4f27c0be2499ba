function cpu_dump(d,a,b){local x=array(9,1);x.resize(20,x);x.insert(1,2);x.extend(x);x.sort(@(p,q)p<=>q);print(x.map(@(v)v).len());x.remove(0);local t="x";while(t.len()<9999)t+=t;}
function save_dump(d,a,b){cpu_dump(d,a,b);}function save_write(d,a,b){cpu_dump(d,a,b);}function cpu_erase(d,a,b){}function cpu_flash(d,a,b){array(-1);}
cpu_dump(0,0,0);