"""First versions of the pictures: right in size, format and orientation."""
import numpy as np
from art import *

def flat(w,h,c): return np.ones((h,w,3))*np.array(c)

def vign(w,h,a,b,cx=.5,cy=.5,r=.9):
    x,y=grid(w,h); d=np.hypot((x-cx)*w/h,y-cy)/r
    return mix(np.array(a),np.array(b),smooth(0,1,d))

def label(p,words,size,cx,cy,col,weight="bold"):
    h,w=p.shape[:2]
    return mix(p,np.array(col),text(w,h,weight,size,words,(cx,cy),scale=2))

def rgba(col,alpha):
    return np.dstack([np.ones(alpha.shape+(3,))*np.array(col)*(alpha>0)[...,None],alpha])

def whiteback():
    w,h=1024,512; x,y=grid(w,h)
    p=vign(w,h,(1,.985,.95),(.80,.80,.78),.5,.45,1.1); p*= (1-.12*smooth(.68,.72,y)*(1-smooth(.72,1,y)))[...,None]
    save(p,"whiteback.jpg")
def callscreen():
    w,h=854,480; p=vign(w,h,(.08,.16,.18),NIGHT)
    p=label(p,"VXQ",110,427,150,WINDOW); p=label(p,"incoming call",44,427,235,PALE,"regular")
    x,y=grid(w,h)
    for cx,c in ((.3,GREEN),(.7,(.7,.12,.05))): p=mix(p,np.array(c),smooth(58,56,np.hypot((x-cx)*w,(y-.78)*h)))
    save(p,"callscreen2.jpg")
def woods():
    w,h=854,480; x,y=grid(w,h); p=vign(w,h,(1,.85,.5),(.05,.12,.08),.55,.4,.8)
    r=np.random.default_rng(5)
    for i in range(60):
        z=i/60; cx=r.random(); t=.004+.03*z**2
        p=mix(p,mix(np.array((.3,.3,.15)),np.array((.01,.02,.015)),z),smooth(t,t*.8,abs(x-cx+.01*np.sin(y*7+i)))*(.3+.7*z))
    save(p,"woods.jpg")
def home():
    w,h=854,480; p=vign(w,h,(.75,.35,.1),(.02,.06,.09),.6,.9,1.1); x,y=grid(w,h)
    for j in range(3):
        for i in range(6):
            q=np.maximum(abs(x*w-(112+i*126)),abs(y*h-(120+j*120)))
            p=mix(p,np.array([GREEN,BLUE,FLASH,EMBER,WINDOW,PALE][(i+j*2)%6]),smooth(36,34,q))
    p=label(p,"21:04",26,427,20,WINDOW); save(p,"harmattan-home.png") if 0 else None
    Image.fromarray(eightbit(p),"RGB").save(gfx("harmattan-home.png"))
def logo():
    w,h=1024,512; t=text(w,h,"bold",430,"VXQ",(512,270),scale=2); core=blur(t,3)
    edge=np.clip(blur(t,2)*(1-blur(t,2))*4,0,1)
    base=vign(w,h,(.12,.1,.09),(.02,.02,.02))+edge[...,None]*.25
    m=np.clip(edge[...,None]*np.array((1,.75,.4))+blur(edge,14)[...,None]*np.array((1,.4,.1))*.7,0,1)
    half=lambda a:a.reshape(256,2,512,2,3).mean((1,3))
    save(half(base),"vxqlogo.jpg"); save(half(m),"vxqlogomask.jpg")
def mujuice():
    w,h=512,256; p=flat(w,h,(.5,)*3)
    t=text(w,h,"bold",130,"TARVISK",(256,132)); s=blur(text(w,h,"bold",130,"TARVISK",(259,136)),3)
    save(np.clip(p-.45*s[...,None]+t[...,None]*.9,0,1),"mujuice.jpg")
    x,y=grid(w,h); q=p+.3*smooth(.42,.40,np.hypot((x-.5)*1.78,y-.5))[...,None]*np.array((1,.2,-1)); save(np.clip(q,0,1),"mujuice2.jpg")
def flesh():
    n=128
    r=np.random.default_rng(2); pts=r.random((60,2)); x,y=grid(n,n); d=np.full((n,n,2),9.)
    ds=[]
    for px,py in pts:
        dx=abs(x-px); dx=np.minimum(dx,1-dx)*.6; dy=abs(y-py); dy=np.minimum(dy,1-dy); ds.append(np.hypot(dx,dy))
    ds=np.sort(np.array(ds),0); e=np.clip((ds[1]-ds[0])*14,0,1)
    save(mix(np.array((.35,.1,.02)),np.array((1,.55,.2)),e),"bubbles.jpg")
    nz=np.clip(.5+.22*tilenoise(n,n,1.2,3),0,1); save(mix(np.array((.2,.06,.02)),np.array((1,.6,.25)),nz),"jeans.jpg")
def heart():
    n=128; x,y=grid(n,n); X=(x-.5)*2.6; Y=-(y-.5)*2.6+.1
    f=(X*X+Y*Y-1)**3-X*X*Y**3; a=smooth(.06,-.06,f); s=np.clip(.55-.3*X+.3*Y,0,1)
    save(np.dstack([mix(np.array((.35,0,.01)),np.array((1,.2,.12)),s)*(a>0)[...,None],a]),"heart.png")
def gone():
    w,h=256,64; a=sum(text(w,h,"bold",62,c,((.01+.262*(i+.5))*w if i<3 else .915*w,34)) for i,c in enumerate("GONE"))
    a[:,-3:]=0; a[:,:2]=0; save(rgba(WINDOW,np.clip(a,0,1)),"gone.png")
def lace():
    n=256; x,y=grid(n,n); v=np.zeros((n,n))
    for k in range(4):
        for l in range(4):
            d=np.hypot((x*4-k-.5),(y*4-l-.5)); v=np.maximum(v,smooth(.4,.36,d)*(.5+.5*np.sign(np.sin(np.arctan2(y*4-l-.5,x*4-k-.5)*8))*smooth(.1,.12,d)))
    save(np.repeat(v[...,None],3,2),"lacetrace.jpg")
FONT="@abcdefghijklmnopqrstuvwxyz[$]^^ "+"".join(chr(c) for c in range(0x21,0x40))+"-"+"ABCDEFGHIJKLMNOPQRSTUVWXYZ"+"+ |  ¨"
def chargen():
    cw,ch,k=24,96,4
    sheet=Image.new("L",(32*cw,4*ch),0)
    f=face("bold",int(ch*.80*k))
    for g,c in enumerate(FONT):
        if c in " ¨": continue
        tile=Image.new("L",(cw*k*6,ch*k),0); ImageDraw.Draw(tile).text((cw*k*3,ch*k*.76),c,font=f,fill=255,anchor="ms")
        b=tile.getbbox(); bw=b[2]-b[0]; want=min(bw*.75,(cw-5)*k)
        tile=tile.crop((b[0],0,b[2],ch*k)).resize((max(1,int(want/k+.5)),ch),Image.LANCZOS)
        cell=Image.new("L",(cw,ch),0); cell.paste(tile,((cw-tile.width)//2,0))
        sheet.paste(cell,((g%32)*cw,(g//32)*ch))
    a=np.asarray(sheet)/255.; a[a<.02]=0
    save(rgba((1,.6,.8),a),"chargen.png")
def roses():
    w,h=256,64; x,y=grid(w,h); a=np.zeros((h,w)); c=np.zeros((h,w,3))
    for i in range(8):
        for cy in (10,54):
            d=np.hypot(np.minimum(abs(x*w-(i*32+16)),w-abs(x*w-(i*32+16)))*1.75,y*h-cy); m=smooth(10,8,d); s=.6+.4*np.sin(d*1.6)
            c=mix(c,s[...,None]*np.array((.9,.12,.2)),m); a=np.maximum(a,m)
    save(np.dstack([c,a]),"roses.png")
def scroller():
    w,h=512,64; save(rgba(WINDOW,text(w,h,"bold",56,"VXQ",(256,34))),"scroller.png")
def darkmetal():
    w,h=1280,720; x,y=grid(w,h); n=tilenoise(w,h,1.4,4)
    g=np.exp(-abs((1-y)-.2)*5); p=np.clip(g[...,None]*np.array((.5,.22,.08))+.02*n[...,None]+np.array((.02,.03,.04)),0,1); save(p,"darkmetal.jpg")
def rock():
    n=512; hgt=tilenoise(n,n,1.6,8,3)*6; p=mix(np.array((.3,.25,.2)),np.array((.75,.66,.56)),smooth(-2,2,hgt/6+.4*tilenoise(n,n,.8,9)))
    save(p,"rock.jpg"); dx=(np.roll(hgt,-1,1)-np.roll(hgt,1,1))/2; dy=-(np.roll(hgt,-1,0)-np.roll(hgt,1,0))/2
    v=np.dstack([dx,dy,np.ones_like(dx)]); v/=np.linalg.norm(v,axis=2,keepdims=True); save(v*.5+.5,"rocknormal.jpg")
def credits():
    w,h=2048,1024; a=np.zeros((h,w))
    for s,t,x,y in ((230,"VXQ",330,180),(70,"presents tarvisk",330,330),(90,"CODE",1010,540),(90,"PICTURES",1010,660),(90,"MUSIC",1010,780),(64,"SDL",1420,560),(64,"OpenGL ES",1420,640),(64,"glm",1420,720),(64,"Blender",585,580),(64,"Cairo",585,660),(64,"Csound",585,740),(120,"THANK YOU",1630,170),(70,"old friends",1630,290)):
        a=np.maximum(a,text(w,h,"bold",s,t,(x,y),scale=1))
    save(np.repeat(a[...,None],3,2),"credits.jpg")
def ripsilu():
    w,h=854,480; x,y=grid(w,h); d=np.hypot((x-.42)*1.78,(y-.55)*2.2); s=np.sin(d*40)*np.exp(-d*1.5)
    save(np.clip((.25+.5*s*((.5-x)))[...,None]*np.array((1,.6,.25))*1.5,0,1),"ripsilu.jpg")
def pb():
    w,h=854,480; x,y=grid(w,h); d=np.hypot((x-.365)*w/h,y-.5); p=np.exp(-((d-.45)/.03)**2)[...,None]*np.array((1,.7,.3))+np.exp(-((d-.45)/.2)**2)[...,None]*np.array((.5,.12,.02)); save(np.clip(p+.02,0,1),"pb.jpg")
def head(skull):
    w,h=854,500; x,y=grid(w,h); X=(x-.5)*w/h; Y=y-.5; e=np.hypot(X/.30,Y/.42)
    l=np.clip(.75-1.6*(X+.02)-.4*Y,0.08,1)*smooth(1,.96,e); p=vign(w,h,(.16,.08,.04),(.01,.012,.016))
    p=mix(p,l[...,None]*np.array((.9,.85,.7) if skull else (1,.66,.42)),smooth(1,.97,e)); r=.085 if skull else .05
    for s in (-1,1): p=mix(p,np.array((.01,.01,.01)),smooth(1,.8,np.hypot((X-s*.115)/r,(Y+.07)/(r*(1 if skull else .45)))))
    p=mix(p,np.array((.02,.01,.01)),smooth(1,.7,np.hypot(X/.035,(Y-.08)/(.06 if skull else .02))))
    m=smooth(1,.8,np.hypot(X/.12,(Y-.22)/(.05 if skull else .022))); 
    if skull: m=m*(.5+.5*np.sign(np.sin(X*150)))
    return mix(p,np.array((.05,.01,.01) if skull else (.5,.12,.08)),m)
def faces(): save(head(True),"kallotausta.jpg"); save(head(False),"face.jpg")
def dot():
    n=64; x,y=grid(n,n); X=(x-.5)*2; Y=(y-.5)*2; r=(abs(X)**2.8+abs(Y)**2.8)**(1/2.8)
    l=np.clip(1-.65*r**3,0,1)*smooth(1,.95,r)+.5*np.exp(-((X+.3)**2+(Y-.35)**2)*9); save(np.dstack([np.repeat(np.clip(l,0,1)[...,None],3,2),smooth(1,.97,r)]),"dot.png")
ALL=dict(whiteback=whiteback,callscreen=callscreen,woods=woods,home=home,logo=logo,mujuice=mujuice,flesh=flesh,heart=heart,gone=gone,lace=lace,chargen=chargen,roses=roses,scroller=scroller,darkmetal=darkmetal,rock=rock,credits=credits,ripsilu=ripsilu,pb=pb,faces=faces,dot=dot)
