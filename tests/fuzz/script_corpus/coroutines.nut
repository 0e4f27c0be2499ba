local t;t=newthread(function(x){print(suspend(x));try{t.call();}catch(e){print(e);}return getstackinfos(1).func;});
t.call(1);t.wakeup(2);print(t.getstatus());print(t.getstackinfos(0));
local g=(function(){for(local i=0;i<3;i++)yield i;})();foreach(v in g)print(v);resume g;