/* quilon page; contains three.js (MIT) and uPlot (MIT), see web/LICENSES */
(()=>{function rm(i){let t=atob(i),e=new Uint8Array(t.length);for(let n=0;n<e.length;++n)e[n]=t.charCodeAt(n);return e}async function ll(i){let t=new Blob([i]).stream().pipeThrough(new DecompressionStream("deflate"));return new Uint8Array(await new Response(t).arrayBuffer())}function cl(i,t){let e=i.length/t,n=t===4?new Uint32Array(e):new Uint16Array(e),s=0;for(let r=0;r<e;++r){let o=i[r]|i[e+r]<<8;t===4&&(o|=i[2*e+r]<<16|i[3*e+r]<<24),s=s+o>>>0,t===2&&(s&=65535),n[r]=s}return n}function om(i,t){let e=i.length/t;return Array.from({length:t},(n,s)=>i.subarray(s*e,(s+1)*e))}function am(i,t,e){let n=i.length/e;return Array.from({length:e},(s,r)=>{let o=t.getFloat64(16*r,!0),a=t.getFloat64(16*r+8,!0),l=new Float32Array(n);for(let c=0;c<n;++c){let u=i[r*n+c];l[c]=u===65535?NaN:o+u/65534*(a-o)}return l})}var Co=class{constructor(t){this.bits=t.bits,this.base=t.base,this.columns=new Map,this.bytes=0}async read(t){if(this.base===void 0)return rm(document.getElementById(`blob${t}`).textContent);let e=await fetch(`${this.base}${t}`);if(!e.ok)throw new Error(`the server answers ${e.status}: ${await e.text()}`);return new Uint8Array(await e.arrayBuffer())}async integers(t){return cl(await ll(await this.read(t)),4)}async decode(t,e,n){let s=await this.read(t);if(n===32)return om(new Float32Array(cl(await ll(s),4).buffer),e);let r=new DataView(s.buffer,s.byteOffset,16*e);return am(cl(await ll(s.subarray(16*e)),2),r,e)}async values(t,e,n=this.bits){let s=this.columns.get(t);s?this.columns.delete(t):(s=await this.decode(t,e,n),this.bytes+=s[0].length*4*s.length),this.columns.set(t,s);for(let[r,o]of this.columns){if(this.bytes<=256e6||r===t)break;this.bytes-=o[0].length*4*o.length,this.columns.delete(r)}return s}};function rt(i,t={},...e){let[n,...s]=i.split("."),r=document.createElement(n);s.length&&(r.className=s.join(" "));for(let[o,a]of Object.entries(t))o.startsWith("on")?r.addEventListener(o.slice(2),a):a===!0?r.setAttribute(o,""):a!==!1&&a!==null&&a!==void 0&&r.setAttribute(o,String(a));return r.append(...e.filter(o=>o!=null).map(_u)),r}var _u=i=>i instanceof Node?i:document.createTextNode(String(i));function Cn(i,...t){i.replaceChildren(...t.map(_u))}var xu=0;function qi(i,t){return t.id||=`control${++xu}`,rt("div.control",{},rt("label",{for:t.id},i),t)}function yu(i,t,e){let n=rt("input",{type:"checkbox",id:`control${++xu}`,onchange:()=>e(n.checked)});return n.checked=t,rt("div.check",{},n,rt("label",{for:n.id},i))}function Js(i,t,e){let n=rt("select",{onchange:()=>e(n.value)});return hl(n,i,t),n}function hl(i,t,e){Cn(i,...t.map(n=>rt("option",{value:n.value},n.text))),i.value=e}function wi(i,t,e){return rt("div.scroll",{tabindex:0,role:"region","aria-label":i},rt("table",{},rt("caption",{},i),rt("thead",{},rt("tr",{},...t.map(n=>rt("th",{scope:"col"},n)))),rt("tbody",{},...e.map(n=>rt("tr",{},...n.map(s=>rt(typeof s=="number"?"td.number":"td",{},typeof s=="number"?s:s??"")))))))}function Ei(i,t,e,n,s,r){let o=Math.max(Math.abs(i),Math.abs(t),Math.abs(e),Math.abs(n),Math.abs(s),Math.abs(r));if(!(o>0))return[o,o,o];let a=(i+t+e)/3,l=(i-a)/o,c=(t-a)/o,u=(e-a)/o,f=n/o,h=s/o,p=r/o,_=(l*l+c*c+u*u)/2+f*f+h*h+p*p,x=Math.sqrt(_/3);if(x===0)return[a,a,a];let m=l*(c*u-h*h)-f*(f*u-h*p)+p*(f*h-c*p),d=Math.acos(Math.max(-1,Math.min(1,m/(2*x**3))))/3,A=w=>a+o*2*x*Math.cos(d+w);return[A(0),A(-2*Math.PI/3),A(2*Math.PI/3)]}var qr=(i,t,e,n,s,r)=>Math.sqrt(((i-t)**2+(t-e)**2+(e-i)**2)/2+3*(n*n+s*s+r*r)),lm=([i,t,e])=>Math.sqrt((i-t)**2+(t-e)**2+(e-i)**2)/3,vu=(...i)=>{let[t,,e]=Ei(...i);return t>=-e*(1-1e-6)?qr(...i):-qr(...i)},ul={p1:(...i)=>Ei(...i)[0],p2:(...i)=>Ei(...i)[1],p3:(...i)=>Ei(...i)[2],mises:qr,"signed-mises":vu,tresca:(...i)=>Ei(...i)[0]-Ei(...i)[2],"max-shear":(...i)=>(Ei(...i)[0]-Ei(...i)[2])/2,hydrostatic:(i,t,e)=>(i+t+e)/3,"octahedral-shear":(...i)=>lm(Ei(...i)),triaxiality:(...i)=>(i[0]+i[1]+i[2])/3/qr(...i),"equivalent-strain":(...i)=>2/3*qr(...i)},cm={...ul,mises:ul["equivalent-strain"],"signed-mises":(...i)=>2/3*vu(...i)};function Mu(i){return i.all.filter(t=>i.components.includes(t)||Su(i,t))}function Su(i,t){if(i.components.length===3&&t==="magnitude")return(e,n,s)=>Math.hypot(e,n,s);if(i.components.length===6)return(i.isStrain?cm:ul)[t]}function fl(i,t,e){let n=i.components.indexOf(e);if(n>=0)return t[n];let s=Su(i,e),r=new t[0].constructor(t[0].length);if(t.length===3){let[o,a,l]=t;for(let c=0;c<r.length;++c)r[c]=s(o[c],a[c],l[c])}else{let[o,a,l,c,u,f]=t;for(let h=0;h<r.length;++h)r[h]=s(o[h],a[h],l[h],c[h],u[h],f[h])}return r}var bu=(i,t)=>Float64Array.from(i,(e,n)=>t[n]-e),dl=class{constructor(t,e){this.blobs=t,this.header=e,this.name=e.name,this.title=e.name,this.ofElements=e.ofElements,this.components=Mu(e),this.start=e.start}has(t,e=0){return this.header.blobs[t]!=null&&(e===0||this.header.differences?.[t]!=null)}read(t){return this.blobs.values(t,this.header.components.length)}async columns(t,e=0){if(!this.has(t,e))return null;let n=await this.read(this.header.blobs[t]);if(e===0)return n;let s=await this.read(this.header.differences[t]);return n.map((r,o)=>Float64Array.from(r,(a,l)=>a+s[o][l]))}async values(t,e,n=0){let s=await this.columns(t,n);return s&&fl(this.header,s,e)}async differences(t,e){if(!this.has(t,1))return null;let n=this.header.components.indexOf(e);if(n>=0)return(await this.read(this.header.differences[t]))[n];let s=(await this.columns(t)).map(r=>Float64Array.from(r));return bu(fl(this.header,s,e),await this.values(t,e,1))}},pl=class{constructor(t){this.variance=t,this.name=t.name.replace("-variance","-spread"),this.title=`${this.name} (standard deviation)`,this.ofElements=t.ofElements,this.components=["largest",...t.header.components],this.start="largest"}has(t,e){return this.variance.has(t,e)}async values(t,e,n){let s=await this.variance.columns(t,n);if(!s)return null;let r=e==="largest"?s:[s[this.variance.header.components.indexOf(e)]];return Float32Array.from(s[0],(o,a)=>Math.sqrt(Math.max(...r.map(l=>l[a]))))}},$r=class{constructor(t,e,n){this.first=t,this.second=e,this.name=n,this.title=n,this.ofElements=t.field.ofElements,this.components=t.field.components,this.start=t.field.start}has(t){return this.first.field.has(t,this.first.side)&&this.second.field.has(t,this.second.side)}async values(t,e){let{field:n}=this.first;if(n===this.second.field&&n.differences)return n.differences(t,e);let[s,r]=await Promise.all([this.first,this.second].map(({field:o,side:a})=>o.values(t,e,a)));return s&&r&&bu(s,r)}};function wu(i,t){let e=t.fields.map(o=>new dl(i,o)),n=o=>e.find(a=>a.name===o),s=[...e];for(let o of e)/-variance($|-)/.test(o.name)&&o.header.components.length===6&&s.push(new pl(o));let r=new Map;for(let o of["nodal-stress","nodal-strain"]){let[a,l]=[n(o),n(`${o}-solver`)];a&&l&&r.set(a,l)}return{fields:s,displacement:e.find(o=>o.header.onf===510),solver:r}}var sh="170",Ps={LEFT:0,MIDDLE:1,RIGHT:2,ROTATE:0,DOLLY:1,PAN:2},Is={ROTATE:0,PAN:1,DOLLY_PAN:2,DOLLY_ROTATE:3},hm=0,Eu=1,um=2;var If=1,fm=2,Ii=3,is=0,wn=1,ii=2,es=0,pr=1,Tu=2,Au=3,Cu=4,dm=5,vs=100,pm=101,mm=102,gm=103,_m=104,xm=200,ym=201,vm=202,Mm=203,Wl=204,Xl=205,Sm=206,bm=207,wm=208,Em=209,Tm=210,Am=211,Cm=212,Rm=213,Pm=214,Yl=0,ql=1,$l=2,xr=3,Zl=4,Jl=5,Kl=6,jl=7,Lf=0,Im=1,Lm=2,ns=0,Dm=1,Um=2,Nm=3,Om=4,Fm=5,Bm=6,km=7;var Df=300,yr=301,vr=302,Ql=303,tc=304,Aa=306,ec=1e3,bs=1001,nc=1002,Dn=1003,zm=1004;var Ro=1005;var Xn=1006,ml=1007;var ws=1008;var Ni=1009,Uf=1010,Nf=1011,ro=1012,rh=1013,Es=1014,Li=1015,ho=1016,oh=1017,ah=1018,Mr=1020,Of=35902,Ff=1021,Bf=1022,si=1023,kf=1024,zf=1025,mr=1026,Sr=1027,Vf=1028,lh=1029,Hf=1030,ch=1031;var hh=1033,Qo=33776,ta=33777,ea=33778,na=33779,ic=35840,sc=35841,rc=35842,oc=35843,ac=36196,lc=37492,cc=37496,hc=37808,uc=37809,fc=37810,dc=37811,pc=37812,mc=37813,gc=37814,_c=37815,xc=37816,yc=37817,vc=37818,Mc=37819,Sc=37820,bc=37821,ia=36492,wc=36494,Ec=36495,Gf=36283,Tc=36284,Ac=36285,Cc=36286;var sa=2300,Rc=2301,gl=2302,Ru=2400,Pu=2401,Iu=2402;var Vm=3200,Hm=3201;var Gm=0,Wm=1,ts="",Wn="srgb",ss="srgb-linear",Ca="linear",Ee="srgb";var Ks=7680;var Lu=519,Xm=512,Ym=513,qm=514,Wf=515,$m=516,Zm=517,Jm=518,Km=519,Du=35044;var Uu="300 es",Di=2e3,ra=2001,Oi=class{addEventListener(t,e){this._listeners===void 0&&(this._listeners={});let n=this._listeners;n[t]===void 0&&(n[t]=[]),n[t].indexOf(e)===-1&&n[t].push(e)}hasEventListener(t,e){if(this._listeners===void 0)return!1;let n=this._listeners;return n[t]!==void 0&&n[t].indexOf(e)!==-1}removeEventListener(t,e){if(this._listeners===void 0)return;let s=this._listeners[t];if(s!==void 0){let r=s.indexOf(e);r!==-1&&s.splice(r,1)}}dispatchEvent(t){if(this._listeners===void 0)return;let n=this._listeners[t.type];if(n!==void 0){t.target=this;let s=n.slice(0);for(let r=0,o=s.length;r<o;r++)s[r].call(this,t);t.target=null}}},hn=["00","01","02","03","04","05","06","07","08","09","0a","0b","0c","0d","0e","0f","10","11","12","13","14","15","16","17","18","19","1a","1b","1c","1d","1e","1f","20","21","22","23","24","25","26","27","28","29","2a","2b","2c","2d","2e","2f","30","31","32","33","34","35","36","37","38","39","3a","3b","3c","3d","3e","3f","40","41","42","43","44","45","46","47","48","49","4a","4b","4c","4d","4e","4f","50","51","52","53","54","55","56","57","58","59","5a","5b","5c","5d","5e","5f","60","61","62","63","64","65","66","67","68","69","6a","6b","6c","6d","6e","6f","70","71","72","73","74","75","76","77","78","79","7a","7b","7c","7d","7e","7f","80","81","82","83","84","85","86","87","88","89","8a","8b","8c","8d","8e","8f","90","91","92","93","94","95","96","97","98","99","9a","9b","9c","9d","9e","9f","a0","a1","a2","a3","a4","a5","a6","a7","a8","a9","aa","ab","ac","ad","ae","af","b0","b1","b2","b3","b4","b5","b6","b7","b8","b9","ba","bb","bc","bd","be","bf","c0","c1","c2","c3","c4","c5","c6","c7","c8","c9","ca","cb","cc","cd","ce","cf","d0","d1","d2","d3","d4","d5","d6","d7","d8","d9","da","db","dc","dd","de","df","e0","e1","e2","e3","e4","e5","e6","e7","e8","e9","ea","eb","ec","ed","ee","ef","f0","f1","f2","f3","f4","f5","f6","f7","f8","f9","fa","fb","fc","fd","fe","ff"],Nu=1234567,no=Math.PI/180,oo=180/Math.PI;function Ar(){let i=Math.random()*4294967295|0,t=Math.random()*4294967295|0,e=Math.random()*4294967295|0,n=Math.random()*4294967295|0;return(hn[i&255]+hn[i>>8&255]+hn[i>>16&255]+hn[i>>24&255]+"-"+hn[t&255]+hn[t>>8&255]+"-"+hn[t>>16&15|64]+hn[t>>24&255]+"-"+hn[e&63|128]+hn[e>>8&255]+"-"+hn[e>>16&255]+hn[e>>24&255]+hn[n&255]+hn[n>>8&255]+hn[n>>16&255]+hn[n>>24&255]).toLowerCase()}function fn(i,t,e){return Math.max(t,Math.min(e,i))}function uh(i,t){return(i%t+t)%t}function jm(i,t,e,n,s){return n+(i-t)*(s-n)/(e-t)}function Qm(i,t,e){return i!==t?(e-i)/(t-i):0}function io(i,t,e){return(1-e)*i+e*t}function tg(i,t,e,n){return io(i,t,1-Math.exp(-e*n))}function eg(i,t=1){return t-Math.abs(uh(i,t*2)-t)}function ng(i,t,e){return i<=t?0:i>=e?1:(i=(i-t)/(e-t),i*i*(3-2*i))}function ig(i,t,e){return i<=t?0:i>=e?1:(i=(i-t)/(e-t),i*i*i*(i*(i*6-15)+10))}function sg(i,t){return i+Math.floor(Math.random()*(t-i+1))}function rg(i,t){return i+Math.random()*(t-i)}function og(i){return i*(.5-Math.random())}function ag(i){i!==void 0&&(Nu=i);let t=Nu+=1831565813;return t=Math.imul(t^t>>>15,t|1),t^=t+Math.imul(t^t>>>7,t|61),((t^t>>>14)>>>0)/4294967296}function lg(i){return i*no}function cg(i){return i*oo}function hg(i){return(i&i-1)===0&&i!==0}function ug(i){return Math.pow(2,Math.ceil(Math.log(i)/Math.LN2))}function fg(i){return Math.pow(2,Math.floor(Math.log(i)/Math.LN2))}function dg(i,t,e,n,s){let r=Math.cos,o=Math.sin,a=r(e/2),l=o(e/2),c=r((t+n)/2),u=o((t+n)/2),f=r((t-n)/2),h=o((t-n)/2),p=r((n-t)/2),_=o((n-t)/2);switch(s){case"XYX":i.set(a*u,l*f,l*h,a*c);break;case"YZY":i.set(l*h,a*u,l*f,a*c);break;case"ZXZ":i.set(l*f,l*h,a*u,a*c);break;case"XZX":i.set(a*u,l*_,l*p,a*c);break;case"YXY":i.set(l*p,a*u,l*_,a*c);break;case"ZYZ":i.set(l*_,l*p,a*u,a*c);break;default:console.warn("THREE.MathUtils: .setQuaternionFromProperEuler() encountered an unknown order: "+s)}}function ur(i,t){switch(t.constructor){case Float32Array:return i;case Uint32Array:return i/4294967295;case Uint16Array:return i/65535;case Uint8Array:return i/255;case Int32Array:return Math.max(i/2147483647,-1);case Int16Array:return Math.max(i/32767,-1);case Int8Array:return Math.max(i/127,-1);default:throw new Error("Invalid component type.")}}function yn(i,t){switch(t.constructor){case Float32Array:return i;case Uint32Array:return Math.round(i*4294967295);case Uint16Array:return Math.round(i*65535);case Uint8Array:return Math.round(i*255);case Int32Array:return Math.round(i*2147483647);case Int16Array:return Math.round(i*32767);case Int8Array:return Math.round(i*127);default:throw new Error("Invalid component type.")}}var Xf={DEG2RAD:no,RAD2DEG:oo,generateUUID:Ar,clamp:fn,euclideanModulo:uh,mapLinear:jm,inverseLerp:Qm,lerp:io,damp:tg,pingpong:eg,smoothstep:ng,smootherstep:ig,randInt:sg,randFloat:rg,randFloatSpread:og,seededRandom:ag,degToRad:lg,radToDeg:cg,isPowerOfTwo:hg,ceilPowerOfTwo:ug,floorPowerOfTwo:fg,setQuaternionFromProperEuler:dg,normalize:yn,denormalize:ur},ie=class i{constructor(t=0,e=0){i.prototype.isVector2=!0,this.x=t,this.y=e}get width(){return this.x}set width(t){this.x=t}get height(){return this.y}set height(t){this.y=t}set(t,e){return this.x=t,this.y=e,this}setScalar(t){return this.x=t,this.y=t,this}setX(t){return this.x=t,this}setY(t){return this.y=t,this}setComponent(t,e){switch(t){case 0:this.x=e;break;case 1:this.y=e;break;default:throw new Error("index is out of range: "+t)}return this}getComponent(t){switch(t){case 0:return this.x;case 1:return this.y;default:throw new Error("index is out of range: "+t)}}clone(){return new this.constructor(this.x,this.y)}copy(t){return this.x=t.x,this.y=t.y,this}add(t){return this.x+=t.x,this.y+=t.y,this}addScalar(t){return this.x+=t,this.y+=t,this}addVectors(t,e){return this.x=t.x+e.x,this.y=t.y+e.y,this}addScaledVector(t,e){return this.x+=t.x*e,this.y+=t.y*e,this}sub(t){return this.x-=t.x,this.y-=t.y,this}subScalar(t){return this.x-=t,this.y-=t,this}subVectors(t,e){return this.x=t.x-e.x,this.y=t.y-e.y,this}multiply(t){return this.x*=t.x,this.y*=t.y,this}multiplyScalar(t){return this.x*=t,this.y*=t,this}divide(t){return this.x/=t.x,this.y/=t.y,this}divideScalar(t){return this.multiplyScalar(1/t)}applyMatrix3(t){let e=this.x,n=this.y,s=t.elements;return this.x=s[0]*e+s[3]*n+s[6],this.y=s[1]*e+s[4]*n+s[7],this}min(t){return this.x=Math.min(this.x,t.x),this.y=Math.min(this.y,t.y),this}max(t){return this.x=Math.max(this.x,t.x),this.y=Math.max(this.y,t.y),this}clamp(t,e){return this.x=Math.max(t.x,Math.min(e.x,this.x)),this.y=Math.max(t.y,Math.min(e.y,this.y)),this}clampScalar(t,e){return this.x=Math.max(t,Math.min(e,this.x)),this.y=Math.max(t,Math.min(e,this.y)),this}clampLength(t,e){let n=this.length();return this.divideScalar(n||1).multiplyScalar(Math.max(t,Math.min(e,n)))}floor(){return this.x=Math.floor(this.x),this.y=Math.floor(this.y),this}ceil(){return this.x=Math.ceil(this.x),this.y=Math.ceil(this.y),this}round(){return this.x=Math.round(this.x),this.y=Math.round(this.y),this}roundToZero(){return this.x=Math.trunc(this.x),this.y=Math.trunc(this.y),this}negate(){return this.x=-this.x,this.y=-this.y,this}dot(t){return this.x*t.x+this.y*t.y}cross(t){return this.x*t.y-this.y*t.x}lengthSq(){return this.x*this.x+this.y*this.y}length(){return Math.sqrt(this.x*this.x+this.y*this.y)}manhattanLength(){return Math.abs(this.x)+Math.abs(this.y)}normalize(){return this.divideScalar(this.length()||1)}angle(){return Math.atan2(-this.y,-this.x)+Math.PI}angleTo(t){let e=Math.sqrt(this.lengthSq()*t.lengthSq());if(e===0)return Math.PI/2;let n=this.dot(t)/e;return Math.acos(fn(n,-1,1))}distanceTo(t){return Math.sqrt(this.distanceToSquared(t))}distanceToSquared(t){let e=this.x-t.x,n=this.y-t.y;return e*e+n*n}manhattanDistanceTo(t){return Math.abs(this.x-t.x)+Math.abs(this.y-t.y)}setLength(t){return this.normalize().multiplyScalar(t)}lerp(t,e){return this.x+=(t.x-this.x)*e,this.y+=(t.y-this.y)*e,this}lerpVectors(t,e,n){return this.x=t.x+(e.x-t.x)*n,this.y=t.y+(e.y-t.y)*n,this}equals(t){return t.x===this.x&&t.y===this.y}fromArray(t,e=0){return this.x=t[e],this.y=t[e+1],this}toArray(t=[],e=0){return t[e]=this.x,t[e+1]=this.y,t}fromBufferAttribute(t,e){return this.x=t.getX(e),this.y=t.getY(e),this}rotateAround(t,e){let n=Math.cos(e),s=Math.sin(e),r=this.x-t.x,o=this.y-t.y;return this.x=r*n-o*s+t.x,this.y=r*s+o*n+t.y,this}random(){return this.x=Math.random(),this.y=Math.random(),this}*[Symbol.iterator](){yield this.x,yield this.y}},te=class i{constructor(t,e,n,s,r,o,a,l,c){i.prototype.isMatrix3=!0,this.elements=[1,0,0,0,1,0,0,0,1],t!==void 0&&this.set(t,e,n,s,r,o,a,l,c)}set(t,e,n,s,r,o,a,l,c){let u=this.elements;return u[0]=t,u[1]=s,u[2]=a,u[3]=e,u[4]=r,u[5]=l,u[6]=n,u[7]=o,u[8]=c,this}identity(){return this.set(1,0,0,0,1,0,0,0,1),this}copy(t){let e=this.elements,n=t.elements;return e[0]=n[0],e[1]=n[1],e[2]=n[2],e[3]=n[3],e[4]=n[4],e[5]=n[5],e[6]=n[6],e[7]=n[7],e[8]=n[8],this}extractBasis(t,e,n){return t.setFromMatrix3Column(this,0),e.setFromMatrix3Column(this,1),n.setFromMatrix3Column(this,2),this}setFromMatrix4(t){let e=t.elements;return this.set(e[0],e[4],e[8],e[1],e[5],e[9],e[2],e[6],e[10]),this}multiply(t){return this.multiplyMatrices(this,t)}premultiply(t){return this.multiplyMatrices(t,this)}multiplyMatrices(t,e){let n=t.elements,s=e.elements,r=this.elements,o=n[0],a=n[3],l=n[6],c=n[1],u=n[4],f=n[7],h=n[2],p=n[5],_=n[8],x=s[0],m=s[3],d=s[6],A=s[1],w=s[4],b=s[7],D=s[2],L=s[5],I=s[8];return r[0]=o*x+a*A+l*D,r[3]=o*m+a*w+l*L,r[6]=o*d+a*b+l*I,r[1]=c*x+u*A+f*D,r[4]=c*m+u*w+f*L,r[7]=c*d+u*b+f*I,r[2]=h*x+p*A+_*D,r[5]=h*m+p*w+_*L,r[8]=h*d+p*b+_*I,this}multiplyScalar(t){let e=this.elements;return e[0]*=t,e[3]*=t,e[6]*=t,e[1]*=t,e[4]*=t,e[7]*=t,e[2]*=t,e[5]*=t,e[8]*=t,this}determinant(){let t=this.elements,e=t[0],n=t[1],s=t[2],r=t[3],o=t[4],a=t[5],l=t[6],c=t[7],u=t[8];return e*o*u-e*a*c-n*r*u+n*a*l+s*r*c-s*o*l}invert(){let t=this.elements,e=t[0],n=t[1],s=t[2],r=t[3],o=t[4],a=t[5],l=t[6],c=t[7],u=t[8],f=u*o-a*c,h=a*l-u*r,p=c*r-o*l,_=e*f+n*h+s*p;if(_===0)return this.set(0,0,0,0,0,0,0,0,0);let x=1/_;return t[0]=f*x,t[1]=(s*c-u*n)*x,t[2]=(a*n-s*o)*x,t[3]=h*x,t[4]=(u*e-s*l)*x,t[5]=(s*r-a*e)*x,t[6]=p*x,t[7]=(n*l-c*e)*x,t[8]=(o*e-n*r)*x,this}transpose(){let t,e=this.elements;return t=e[1],e[1]=e[3],e[3]=t,t=e[2],e[2]=e[6],e[6]=t,t=e[5],e[5]=e[7],e[7]=t,this}getNormalMatrix(t){return this.setFromMatrix4(t).invert().transpose()}transposeIntoArray(t){let e=this.elements;return t[0]=e[0],t[1]=e[3],t[2]=e[6],t[3]=e[1],t[4]=e[4],t[5]=e[7],t[6]=e[2],t[7]=e[5],t[8]=e[8],this}setUvTransform(t,e,n,s,r,o,a){let l=Math.cos(r),c=Math.sin(r);return this.set(n*l,n*c,-n*(l*o+c*a)+o+t,-s*c,s*l,-s*(-c*o+l*a)+a+e,0,0,1),this}scale(t,e){return this.premultiply(_l.makeScale(t,e)),this}rotate(t){return this.premultiply(_l.makeRotation(-t)),this}translate(t,e){return this.premultiply(_l.makeTranslation(t,e)),this}makeTranslation(t,e){return t.isVector2?this.set(1,0,t.x,0,1,t.y,0,0,1):this.set(1,0,t,0,1,e,0,0,1),this}makeRotation(t){let e=Math.cos(t),n=Math.sin(t);return this.set(e,-n,0,n,e,0,0,0,1),this}makeScale(t,e){return this.set(t,0,0,0,e,0,0,0,1),this}equals(t){let e=this.elements,n=t.elements;for(let s=0;s<9;s++)if(e[s]!==n[s])return!1;return!0}fromArray(t,e=0){for(let n=0;n<9;n++)this.elements[n]=t[n+e];return this}toArray(t=[],e=0){let n=this.elements;return t[e]=n[0],t[e+1]=n[1],t[e+2]=n[2],t[e+3]=n[3],t[e+4]=n[4],t[e+5]=n[5],t[e+6]=n[6],t[e+7]=n[7],t[e+8]=n[8],t}clone(){return new this.constructor().fromArray(this.elements)}},_l=new te;function Yf(i){for(let t=i.length-1;t>=0;--t)if(i[t]>=65535)return!0;return!1}function oa(i){return document.createElementNS("http://www.w3.org/1999/xhtml",i)}function pg(){let i=oa("canvas");return i.style.display="block",i}var Ou={};function to(i){i in Ou||(Ou[i]=!0,console.warn(i))}function mg(i,t,e){return new Promise(function(n,s){function r(){switch(i.clientWaitSync(t,i.SYNC_FLUSH_COMMANDS_BIT,0)){case i.WAIT_FAILED:s();break;case i.TIMEOUT_EXPIRED:setTimeout(r,e);break;default:n()}}setTimeout(r,e)})}function gg(i){let t=i.elements;t[2]=.5*t[2]+.5*t[3],t[6]=.5*t[6]+.5*t[7],t[10]=.5*t[10]+.5*t[11],t[14]=.5*t[14]+.5*t[15]}function _g(i){let t=i.elements;t[11]===-1?(t[10]=-t[10]-1,t[14]=-t[14]):(t[10]=-t[10],t[14]=-t[14]+1)}var de={enabled:!0,workingColorSpace:ss,spaces:{},convert:function(i,t,e){return this.enabled===!1||t===e||!t||!e||(this.spaces[t].transfer===Ee&&(i.r=Ui(i.r),i.g=Ui(i.g),i.b=Ui(i.b)),this.spaces[t].primaries!==this.spaces[e].primaries&&(i.applyMatrix3(this.spaces[t].toXYZ),i.applyMatrix3(this.spaces[e].fromXYZ)),this.spaces[e].transfer===Ee&&(i.r=gr(i.r),i.g=gr(i.g),i.b=gr(i.b))),i},fromWorkingColorSpace:function(i,t){return this.convert(i,this.workingColorSpace,t)},toWorkingColorSpace:function(i,t){return this.convert(i,t,this.workingColorSpace)},getPrimaries:function(i){return this.spaces[i].primaries},getTransfer:function(i){return i===ts?Ca:this.spaces[i].transfer},getLuminanceCoefficients:function(i,t=this.workingColorSpace){return i.fromArray(this.spaces[t].luminanceCoefficients)},define:function(i){Object.assign(this.spaces,i)},_getMatrix:function(i,t,e){return i.copy(this.spaces[t].toXYZ).multiply(this.spaces[e].fromXYZ)},_getDrawingBufferColorSpace:function(i){return this.spaces[i].outputColorSpaceConfig.drawingBufferColorSpace},_getUnpackColorSpace:function(i=this.workingColorSpace){return this.spaces[i].workingColorSpaceConfig.unpackColorSpace}};function Ui(i){return i<.04045?i*.0773993808:Math.pow(i*.9478672986+.0521327014,2.4)}function gr(i){return i<.0031308?i*12.92:1.055*Math.pow(i,.41666)-.055}var Fu=[.64,.33,.3,.6,.15,.06],Bu=[.2126,.7152,.0722],ku=[.3127,.329],zu=new te().set(.4123908,.3575843,.1804808,.212639,.7151687,.0721923,.0193308,.1191948,.9505322),Vu=new te().set(3.2409699,-1.5373832,-.4986108,-.9692436,1.8759675,.0415551,.0556301,-.203977,1.0569715);de.define({[ss]:{primaries:Fu,whitePoint:ku,transfer:Ca,toXYZ:zu,fromXYZ:Vu,luminanceCoefficients:Bu,workingColorSpaceConfig:{unpackColorSpace:Wn},outputColorSpaceConfig:{drawingBufferColorSpace:Wn}},[Wn]:{primaries:Fu,whitePoint:ku,transfer:Ee,toXYZ:zu,fromXYZ:Vu,luminanceCoefficients:Bu,outputColorSpaceConfig:{drawingBufferColorSpace:Wn}}});var js,Pc=class{static getDataURL(t){if(/^data:/i.test(t.src)||typeof HTMLCanvasElement>"u")return t.src;let e;if(t instanceof HTMLCanvasElement)e=t;else{js===void 0&&(js=oa("canvas")),js.width=t.width,js.height=t.height;let n=js.getContext("2d");t instanceof ImageData?n.putImageData(t,0,0):n.drawImage(t,0,0,t.width,t.height),e=js}return e.width>2048||e.height>2048?(console.warn("THREE.ImageUtils.getDataURL: Image converted to jpg for performance reasons",t),e.toDataURL("image/jpeg",.6)):e.toDataURL("image/png")}static sRGBToLinear(t){if(typeof HTMLImageElement<"u"&&t instanceof HTMLImageElement||typeof HTMLCanvasElement<"u"&&t instanceof HTMLCanvasElement||typeof ImageBitmap<"u"&&t instanceof ImageBitmap){let e=oa("canvas");e.width=t.width,e.height=t.height;let n=e.getContext("2d");n.drawImage(t,0,0,t.width,t.height);let s=n.getImageData(0,0,t.width,t.height),r=s.data;for(let o=0;o<r.length;o++)r[o]=Ui(r[o]/255)*255;return n.putImageData(s,0,0),e}else if(t.data){let e=t.data.slice(0);for(let n=0;n<e.length;n++)e instanceof Uint8Array||e instanceof Uint8ClampedArray?e[n]=Math.floor(Ui(e[n]/255)*255):e[n]=Ui(e[n]);return{data:e,width:t.width,height:t.height}}else return console.warn("THREE.ImageUtils.sRGBToLinear(): Unsupported image type. No color space conversion applied."),t}},xg=0,aa=class{constructor(t=null){this.isSource=!0,Object.defineProperty(this,"id",{value:xg++}),this.uuid=Ar(),this.data=t,this.dataReady=!0,this.version=0}set needsUpdate(t){t===!0&&this.version++}toJSON(t){let e=t===void 0||typeof t=="string";if(!e&&t.images[this.uuid]!==void 0)return t.images[this.uuid];let n={uuid:this.uuid,url:""},s=this.data;if(s!==null){let r;if(Array.isArray(s)){r=[];for(let o=0,a=s.length;o<a;o++)s[o].isDataTexture?r.push(xl(s[o].image)):r.push(xl(s[o]))}else r=xl(s);n.url=r}return e||(t.images[this.uuid]=n),n}};function xl(i){return typeof HTMLImageElement<"u"&&i instanceof HTMLImageElement||typeof HTMLCanvasElement<"u"&&i instanceof HTMLCanvasElement||typeof ImageBitmap<"u"&&i instanceof ImageBitmap?Pc.getDataURL(i):i.data?{data:Array.from(i.data),width:i.width,height:i.height,type:i.data.constructor.name}:(console.warn("THREE.Texture: Unable to serialize Texture."),{})}var yg=0,Un=class i extends Oi{constructor(t=i.DEFAULT_IMAGE,e=i.DEFAULT_MAPPING,n=bs,s=bs,r=Xn,o=ws,a=si,l=Ni,c=i.DEFAULT_ANISOTROPY,u=ts){super(),this.isTexture=!0,Object.defineProperty(this,"id",{value:yg++}),this.uuid=Ar(),this.name="",this.source=new aa(t),this.mipmaps=[],this.mapping=e,this.channel=0,this.wrapS=n,this.wrapT=s,this.magFilter=r,this.minFilter=o,this.anisotropy=c,this.format=a,this.internalFormat=null,this.type=l,this.offset=new ie(0,0),this.repeat=new ie(1,1),this.center=new ie(0,0),this.rotation=0,this.matrixAutoUpdate=!0,this.matrix=new te,this.generateMipmaps=!0,this.premultiplyAlpha=!1,this.flipY=!0,this.unpackAlignment=4,this.colorSpace=u,this.userData={},this.version=0,this.onUpdate=null,this.isRenderTargetTexture=!1,this.pmremVersion=0}get image(){return this.source.data}set image(t=null){this.source.data=t}updateMatrix(){this.matrix.setUvTransform(this.offset.x,this.offset.y,this.repeat.x,this.repeat.y,this.rotation,this.center.x,this.center.y)}clone(){return new this.constructor().copy(this)}copy(t){return this.name=t.name,this.source=t.source,this.mipmaps=t.mipmaps.slice(0),this.mapping=t.mapping,this.channel=t.channel,this.wrapS=t.wrapS,this.wrapT=t.wrapT,this.magFilter=t.magFilter,this.minFilter=t.minFilter,this.anisotropy=t.anisotropy,this.format=t.format,this.internalFormat=t.internalFormat,this.type=t.type,this.offset.copy(t.offset),this.repeat.copy(t.repeat),this.center.copy(t.center),this.rotation=t.rotation,this.matrixAutoUpdate=t.matrixAutoUpdate,this.matrix.copy(t.matrix),this.generateMipmaps=t.generateMipmaps,this.premultiplyAlpha=t.premultiplyAlpha,this.flipY=t.flipY,this.unpackAlignment=t.unpackAlignment,this.colorSpace=t.colorSpace,this.userData=JSON.parse(JSON.stringify(t.userData)),this.needsUpdate=!0,this}toJSON(t){let e=t===void 0||typeof t=="string";if(!e&&t.textures[this.uuid]!==void 0)return t.textures[this.uuid];let n={metadata:{version:4.6,type:"Texture",generator:"Texture.toJSON"},uuid:this.uuid,name:this.name,image:this.source.toJSON(t).uuid,mapping:this.mapping,channel:this.channel,repeat:[this.repeat.x,this.repeat.y],offset:[this.offset.x,this.offset.y],center:[this.center.x,this.center.y],rotation:this.rotation,wrap:[this.wrapS,this.wrapT],format:this.format,internalFormat:this.internalFormat,type:this.type,colorSpace:this.colorSpace,minFilter:this.minFilter,magFilter:this.magFilter,anisotropy:this.anisotropy,flipY:this.flipY,generateMipmaps:this.generateMipmaps,premultiplyAlpha:this.premultiplyAlpha,unpackAlignment:this.unpackAlignment};return Object.keys(this.userData).length>0&&(n.userData=this.userData),e||(t.textures[this.uuid]=n),n}dispose(){this.dispatchEvent({type:"dispose"})}transformUv(t){if(this.mapping!==Df)return t;if(t.applyMatrix3(this.matrix),t.x<0||t.x>1)switch(this.wrapS){case ec:t.x=t.x-Math.floor(t.x);break;case bs:t.x=t.x<0?0:1;break;case nc:Math.abs(Math.floor(t.x)%2)===1?t.x=Math.ceil(t.x)-t.x:t.x=t.x-Math.floor(t.x);break}if(t.y<0||t.y>1)switch(this.wrapT){case ec:t.y=t.y-Math.floor(t.y);break;case bs:t.y=t.y<0?0:1;break;case nc:Math.abs(Math.floor(t.y)%2)===1?t.y=Math.ceil(t.y)-t.y:t.y=t.y-Math.floor(t.y);break}return this.flipY&&(t.y=1-t.y),t}set needsUpdate(t){t===!0&&(this.version++,this.source.needsUpdate=!0)}set needsPMREMUpdate(t){t===!0&&this.pmremVersion++}};Un.DEFAULT_IMAGE=null;Un.DEFAULT_MAPPING=Df;Un.DEFAULT_ANISOTROPY=1;var Fe=class i{constructor(t=0,e=0,n=0,s=1){i.prototype.isVector4=!0,this.x=t,this.y=e,this.z=n,this.w=s}get width(){return this.z}set width(t){this.z=t}get height(){return this.w}set height(t){this.w=t}set(t,e,n,s){return this.x=t,this.y=e,this.z=n,this.w=s,this}setScalar(t){return this.x=t,this.y=t,this.z=t,this.w=t,this}setX(t){return this.x=t,this}setY(t){return this.y=t,this}setZ(t){return this.z=t,this}setW(t){return this.w=t,this}setComponent(t,e){switch(t){case 0:this.x=e;break;case 1:this.y=e;break;case 2:this.z=e;break;case 3:this.w=e;break;default:throw new Error("index is out of range: "+t)}return this}getComponent(t){switch(t){case 0:return this.x;case 1:return this.y;case 2:return this.z;case 3:return this.w;default:throw new Error("index is out of range: "+t)}}clone(){return new this.constructor(this.x,this.y,this.z,this.w)}copy(t){return this.x=t.x,this.y=t.y,this.z=t.z,this.w=t.w!==void 0?t.w:1,this}add(t){return this.x+=t.x,this.y+=t.y,this.z+=t.z,this.w+=t.w,this}addScalar(t){return this.x+=t,this.y+=t,this.z+=t,this.w+=t,this}addVectors(t,e){return this.x=t.x+e.x,this.y=t.y+e.y,this.z=t.z+e.z,this.w=t.w+e.w,this}addScaledVector(t,e){return this.x+=t.x*e,this.y+=t.y*e,this.z+=t.z*e,this.w+=t.w*e,this}sub(t){return this.x-=t.x,this.y-=t.y,this.z-=t.z,this.w-=t.w,this}subScalar(t){return this.x-=t,this.y-=t,this.z-=t,this.w-=t,this}subVectors(t,e){return this.x=t.x-e.x,this.y=t.y-e.y,this.z=t.z-e.z,this.w=t.w-e.w,this}multiply(t){return this.x*=t.x,this.y*=t.y,this.z*=t.z,this.w*=t.w,this}multiplyScalar(t){return this.x*=t,this.y*=t,this.z*=t,this.w*=t,this}applyMatrix4(t){let e=this.x,n=this.y,s=this.z,r=this.w,o=t.elements;return this.x=o[0]*e+o[4]*n+o[8]*s+o[12]*r,this.y=o[1]*e+o[5]*n+o[9]*s+o[13]*r,this.z=o[2]*e+o[6]*n+o[10]*s+o[14]*r,this.w=o[3]*e+o[7]*n+o[11]*s+o[15]*r,this}divide(t){return this.x/=t.x,this.y/=t.y,this.z/=t.z,this.w/=t.w,this}divideScalar(t){return this.multiplyScalar(1/t)}setAxisAngleFromQuaternion(t){this.w=2*Math.acos(t.w);let e=Math.sqrt(1-t.w*t.w);return e<1e-4?(this.x=1,this.y=0,this.z=0):(this.x=t.x/e,this.y=t.y/e,this.z=t.z/e),this}setAxisAngleFromRotationMatrix(t){let e,n,s,r,l=t.elements,c=l[0],u=l[4],f=l[8],h=l[1],p=l[5],_=l[9],x=l[2],m=l[6],d=l[10];if(Math.abs(u-h)<.01&&Math.abs(f-x)<.01&&Math.abs(_-m)<.01){if(Math.abs(u+h)<.1&&Math.abs(f+x)<.1&&Math.abs(_+m)<.1&&Math.abs(c+p+d-3)<.1)return this.set(1,0,0,0),this;e=Math.PI;let w=(c+1)/2,b=(p+1)/2,D=(d+1)/2,L=(u+h)/4,I=(f+x)/4,U=(_+m)/4;return w>b&&w>D?w<.01?(n=0,s=.707106781,r=.707106781):(n=Math.sqrt(w),s=L/n,r=I/n):b>D?b<.01?(n=.707106781,s=0,r=.707106781):(s=Math.sqrt(b),n=L/s,r=U/s):D<.01?(n=.707106781,s=.707106781,r=0):(r=Math.sqrt(D),n=I/r,s=U/r),this.set(n,s,r,e),this}let A=Math.sqrt((m-_)*(m-_)+(f-x)*(f-x)+(h-u)*(h-u));return Math.abs(A)<.001&&(A=1),this.x=(m-_)/A,this.y=(f-x)/A,this.z=(h-u)/A,this.w=Math.acos((c+p+d-1)/2),this}setFromMatrixPosition(t){let e=t.elements;return this.x=e[12],this.y=e[13],this.z=e[14],this.w=e[15],this}min(t){return this.x=Math.min(this.x,t.x),this.y=Math.min(this.y,t.y),this.z=Math.min(this.z,t.z),this.w=Math.min(this.w,t.w),this}max(t){return this.x=Math.max(this.x,t.x),this.y=Math.max(this.y,t.y),this.z=Math.max(this.z,t.z),this.w=Math.max(this.w,t.w),this}clamp(t,e){return this.x=Math.max(t.x,Math.min(e.x,this.x)),this.y=Math.max(t.y,Math.min(e.y,this.y)),this.z=Math.max(t.z,Math.min(e.z,this.z)),this.w=Math.max(t.w,Math.min(e.w,this.w)),this}clampScalar(t,e){return this.x=Math.max(t,Math.min(e,this.x)),this.y=Math.max(t,Math.min(e,this.y)),this.z=Math.max(t,Math.min(e,this.z)),this.w=Math.max(t,Math.min(e,this.w)),this}clampLength(t,e){let n=this.length();return this.divideScalar(n||1).multiplyScalar(Math.max(t,Math.min(e,n)))}floor(){return this.x=Math.floor(this.x),this.y=Math.floor(this.y),this.z=Math.floor(this.z),this.w=Math.floor(this.w),this}ceil(){return this.x=Math.ceil(this.x),this.y=Math.ceil(this.y),this.z=Math.ceil(this.z),this.w=Math.ceil(this.w),this}round(){return this.x=Math.round(this.x),this.y=Math.round(this.y),this.z=Math.round(this.z),this.w=Math.round(this.w),this}roundToZero(){return this.x=Math.trunc(this.x),this.y=Math.trunc(this.y),this.z=Math.trunc(this.z),this.w=Math.trunc(this.w),this}negate(){return this.x=-this.x,this.y=-this.y,this.z=-this.z,this.w=-this.w,this}dot(t){return this.x*t.x+this.y*t.y+this.z*t.z+this.w*t.w}lengthSq(){return this.x*this.x+this.y*this.y+this.z*this.z+this.w*this.w}length(){return Math.sqrt(this.x*this.x+this.y*this.y+this.z*this.z+this.w*this.w)}manhattanLength(){return Math.abs(this.x)+Math.abs(this.y)+Math.abs(this.z)+Math.abs(this.w)}normalize(){return this.divideScalar(this.length()||1)}setLength(t){return this.normalize().multiplyScalar(t)}lerp(t,e){return this.x+=(t.x-this.x)*e,this.y+=(t.y-this.y)*e,this.z+=(t.z-this.z)*e,this.w+=(t.w-this.w)*e,this}lerpVectors(t,e,n){return this.x=t.x+(e.x-t.x)*n,this.y=t.y+(e.y-t.y)*n,this.z=t.z+(e.z-t.z)*n,this.w=t.w+(e.w-t.w)*n,this}equals(t){return t.x===this.x&&t.y===this.y&&t.z===this.z&&t.w===this.w}fromArray(t,e=0){return this.x=t[e],this.y=t[e+1],this.z=t[e+2],this.w=t[e+3],this}toArray(t=[],e=0){return t[e]=this.x,t[e+1]=this.y,t[e+2]=this.z,t[e+3]=this.w,t}fromBufferAttribute(t,e){return this.x=t.getX(e),this.y=t.getY(e),this.z=t.getZ(e),this.w=t.getW(e),this}random(){return this.x=Math.random(),this.y=Math.random(),this.z=Math.random(),this.w=Math.random(),this}*[Symbol.iterator](){yield this.x,yield this.y,yield this.z,yield this.w}},Ic=class extends Oi{constructor(t=1,e=1,n={}){super(),this.isRenderTarget=!0,this.width=t,this.height=e,this.depth=1,this.scissor=new Fe(0,0,t,e),this.scissorTest=!1,this.viewport=new Fe(0,0,t,e);let s={width:t,height:e,depth:1};n=Object.assign({generateMipmaps:!1,internalFormat:null,minFilter:Xn,depthBuffer:!0,stencilBuffer:!1,resolveDepthBuffer:!0,resolveStencilBuffer:!0,depthTexture:null,samples:0,count:1},n);let r=new Un(s,n.mapping,n.wrapS,n.wrapT,n.magFilter,n.minFilter,n.format,n.type,n.anisotropy,n.colorSpace);r.flipY=!1,r.generateMipmaps=n.generateMipmaps,r.internalFormat=n.internalFormat,this.textures=[];let o=n.count;for(let a=0;a<o;a++)this.textures[a]=r.clone(),this.textures[a].isRenderTargetTexture=!0;this.depthBuffer=n.depthBuffer,this.stencilBuffer=n.stencilBuffer,this.resolveDepthBuffer=n.resolveDepthBuffer,this.resolveStencilBuffer=n.resolveStencilBuffer,this.depthTexture=n.depthTexture,this.samples=n.samples}get texture(){return this.textures[0]}set texture(t){this.textures[0]=t}setSize(t,e,n=1){if(this.width!==t||this.height!==e||this.depth!==n){this.width=t,this.height=e,this.depth=n;for(let s=0,r=this.textures.length;s<r;s++)this.textures[s].image.width=t,this.textures[s].image.height=e,this.textures[s].image.depth=n;this.dispose()}this.viewport.set(0,0,t,e),this.scissor.set(0,0,t,e)}clone(){return new this.constructor().copy(this)}copy(t){this.width=t.width,this.height=t.height,this.depth=t.depth,this.scissor.copy(t.scissor),this.scissorTest=t.scissorTest,this.viewport.copy(t.viewport),this.textures.length=0;for(let n=0,s=t.textures.length;n<s;n++)this.textures[n]=t.textures[n].clone(),this.textures[n].isRenderTargetTexture=!0;let e=Object.assign({},t.texture.image);return this.texture.source=new aa(e),this.depthBuffer=t.depthBuffer,this.stencilBuffer=t.stencilBuffer,this.resolveDepthBuffer=t.resolveDepthBuffer,this.resolveStencilBuffer=t.resolveStencilBuffer,t.depthTexture!==null&&(this.depthTexture=t.depthTexture.clone()),this.samples=t.samples,this}dispose(){this.dispatchEvent({type:"dispose"})}},Fi=class extends Ic{constructor(t=1,e=1,n={}){super(t,e,n),this.isWebGLRenderTarget=!0}},la=class extends Un{constructor(t=null,e=1,n=1,s=1){super(null),this.isDataArrayTexture=!0,this.image={data:t,width:e,height:n,depth:s},this.magFilter=Dn,this.minFilter=Dn,this.wrapR=bs,this.generateMipmaps=!1,this.flipY=!1,this.unpackAlignment=1,this.layerUpdates=new Set}addLayerUpdate(t){this.layerUpdates.add(t)}clearLayerUpdates(){this.layerUpdates.clear()}};var Lc=class extends Un{constructor(t=null,e=1,n=1,s=1){super(null),this.isData3DTexture=!0,this.image={data:t,width:e,height:n,depth:s},this.magFilter=Dn,this.minFilter=Dn,this.wrapR=bs,this.generateMipmaps=!1,this.flipY=!1,this.unpackAlignment=1}};var oi=class{constructor(t=0,e=0,n=0,s=1){this.isQuaternion=!0,this._x=t,this._y=e,this._z=n,this._w=s}static slerpFlat(t,e,n,s,r,o,a){let l=n[s+0],c=n[s+1],u=n[s+2],f=n[s+3],h=r[o+0],p=r[o+1],_=r[o+2],x=r[o+3];if(a===0){t[e+0]=l,t[e+1]=c,t[e+2]=u,t[e+3]=f;return}if(a===1){t[e+0]=h,t[e+1]=p,t[e+2]=_,t[e+3]=x;return}if(f!==x||l!==h||c!==p||u!==_){let m=1-a,d=l*h+c*p+u*_+f*x,A=d>=0?1:-1,w=1-d*d;if(w>Number.EPSILON){let D=Math.sqrt(w),L=Math.atan2(D,d*A);m=Math.sin(m*L)/D,a=Math.sin(a*L)/D}let b=a*A;if(l=l*m+h*b,c=c*m+p*b,u=u*m+_*b,f=f*m+x*b,m===1-a){let D=1/Math.sqrt(l*l+c*c+u*u+f*f);l*=D,c*=D,u*=D,f*=D}}t[e]=l,t[e+1]=c,t[e+2]=u,t[e+3]=f}static multiplyQuaternionsFlat(t,e,n,s,r,o){let a=n[s],l=n[s+1],c=n[s+2],u=n[s+3],f=r[o],h=r[o+1],p=r[o+2],_=r[o+3];return t[e]=a*_+u*f+l*p-c*h,t[e+1]=l*_+u*h+c*f-a*p,t[e+2]=c*_+u*p+a*h-l*f,t[e+3]=u*_-a*f-l*h-c*p,t}get x(){return this._x}set x(t){this._x=t,this._onChangeCallback()}get y(){return this._y}set y(t){this._y=t,this._onChangeCallback()}get z(){return this._z}set z(t){this._z=t,this._onChangeCallback()}get w(){return this._w}set w(t){this._w=t,this._onChangeCallback()}set(t,e,n,s){return this._x=t,this._y=e,this._z=n,this._w=s,this._onChangeCallback(),this}clone(){return new this.constructor(this._x,this._y,this._z,this._w)}copy(t){return this._x=t.x,this._y=t.y,this._z=t.z,this._w=t.w,this._onChangeCallback(),this}setFromEuler(t,e=!0){let n=t._x,s=t._y,r=t._z,o=t._order,a=Math.cos,l=Math.sin,c=a(n/2),u=a(s/2),f=a(r/2),h=l(n/2),p=l(s/2),_=l(r/2);switch(o){case"XYZ":this._x=h*u*f+c*p*_,this._y=c*p*f-h*u*_,this._z=c*u*_+h*p*f,this._w=c*u*f-h*p*_;break;case"YXZ":this._x=h*u*f+c*p*_,this._y=c*p*f-h*u*_,this._z=c*u*_-h*p*f,this._w=c*u*f+h*p*_;break;case"ZXY":this._x=h*u*f-c*p*_,this._y=c*p*f+h*u*_,this._z=c*u*_+h*p*f,this._w=c*u*f-h*p*_;break;case"ZYX":this._x=h*u*f-c*p*_,this._y=c*p*f+h*u*_,this._z=c*u*_-h*p*f,this._w=c*u*f+h*p*_;break;case"YZX":this._x=h*u*f+c*p*_,this._y=c*p*f+h*u*_,this._z=c*u*_-h*p*f,this._w=c*u*f-h*p*_;break;case"XZY":this._x=h*u*f-c*p*_,this._y=c*p*f-h*u*_,this._z=c*u*_+h*p*f,this._w=c*u*f+h*p*_;break;default:console.warn("THREE.Quaternion: .setFromEuler() encountered an unknown order: "+o)}return e===!0&&this._onChangeCallback(),this}setFromAxisAngle(t,e){let n=e/2,s=Math.sin(n);return this._x=t.x*s,this._y=t.y*s,this._z=t.z*s,this._w=Math.cos(n),this._onChangeCallback(),this}setFromRotationMatrix(t){let e=t.elements,n=e[0],s=e[4],r=e[8],o=e[1],a=e[5],l=e[9],c=e[2],u=e[6],f=e[10],h=n+a+f;if(h>0){let p=.5/Math.sqrt(h+1);this._w=.25/p,this._x=(u-l)*p,this._y=(r-c)*p,this._z=(o-s)*p}else if(n>a&&n>f){let p=2*Math.sqrt(1+n-a-f);this._w=(u-l)/p,this._x=.25*p,this._y=(s+o)/p,this._z=(r+c)/p}else if(a>f){let p=2*Math.sqrt(1+a-n-f);this._w=(r-c)/p,this._x=(s+o)/p,this._y=.25*p,this._z=(l+u)/p}else{let p=2*Math.sqrt(1+f-n-a);this._w=(o-s)/p,this._x=(r+c)/p,this._y=(l+u)/p,this._z=.25*p}return this._onChangeCallback(),this}setFromUnitVectors(t,e){let n=t.dot(e)+1;return n<Number.EPSILON?(n=0,Math.abs(t.x)>Math.abs(t.z)?(this._x=-t.y,this._y=t.x,this._z=0,this._w=n):(this._x=0,this._y=-t.z,this._z=t.y,this._w=n)):(this._x=t.y*e.z-t.z*e.y,this._y=t.z*e.x-t.x*e.z,this._z=t.x*e.y-t.y*e.x,this._w=n),this.normalize()}angleTo(t){return 2*Math.acos(Math.abs(fn(this.dot(t),-1,1)))}rotateTowards(t,e){let n=this.angleTo(t);if(n===0)return this;let s=Math.min(1,e/n);return this.slerp(t,s),this}identity(){return this.set(0,0,0,1)}invert(){return this.conjugate()}conjugate(){return this._x*=-1,this._y*=-1,this._z*=-1,this._onChangeCallback(),this}dot(t){return this._x*t._x+this._y*t._y+this._z*t._z+this._w*t._w}lengthSq(){return this._x*this._x+this._y*this._y+this._z*this._z+this._w*this._w}length(){return Math.sqrt(this._x*this._x+this._y*this._y+this._z*this._z+this._w*this._w)}normalize(){let t=this.length();return t===0?(this._x=0,this._y=0,this._z=0,this._w=1):(t=1/t,this._x=this._x*t,this._y=this._y*t,this._z=this._z*t,this._w=this._w*t),this._onChangeCallback(),this}multiply(t){return this.multiplyQuaternions(this,t)}premultiply(t){return this.multiplyQuaternions(t,this)}multiplyQuaternions(t,e){let n=t._x,s=t._y,r=t._z,o=t._w,a=e._x,l=e._y,c=e._z,u=e._w;return this._x=n*u+o*a+s*c-r*l,this._y=s*u+o*l+r*a-n*c,this._z=r*u+o*c+n*l-s*a,this._w=o*u-n*a-s*l-r*c,this._onChangeCallback(),this}slerp(t,e){if(e===0)return this;if(e===1)return this.copy(t);let n=this._x,s=this._y,r=this._z,o=this._w,a=o*t._w+n*t._x+s*t._y+r*t._z;if(a<0?(this._w=-t._w,this._x=-t._x,this._y=-t._y,this._z=-t._z,a=-a):this.copy(t),a>=1)return this._w=o,this._x=n,this._y=s,this._z=r,this;let l=1-a*a;if(l<=Number.EPSILON){let p=1-e;return this._w=p*o+e*this._w,this._x=p*n+e*this._x,this._y=p*s+e*this._y,this._z=p*r+e*this._z,this.normalize(),this}let c=Math.sqrt(l),u=Math.atan2(c,a),f=Math.sin((1-e)*u)/c,h=Math.sin(e*u)/c;return this._w=o*f+this._w*h,this._x=n*f+this._x*h,this._y=s*f+this._y*h,this._z=r*f+this._z*h,this._onChangeCallback(),this}slerpQuaternions(t,e,n){return this.copy(t).slerp(e,n)}random(){let t=2*Math.PI*Math.random(),e=2*Math.PI*Math.random(),n=Math.random(),s=Math.sqrt(1-n),r=Math.sqrt(n);return this.set(s*Math.sin(t),s*Math.cos(t),r*Math.sin(e),r*Math.cos(e))}equals(t){return t._x===this._x&&t._y===this._y&&t._z===this._z&&t._w===this._w}fromArray(t,e=0){return this._x=t[e],this._y=t[e+1],this._z=t[e+2],this._w=t[e+3],this._onChangeCallback(),this}toArray(t=[],e=0){return t[e]=this._x,t[e+1]=this._y,t[e+2]=this._z,t[e+3]=this._w,t}fromBufferAttribute(t,e){return this._x=t.getX(e),this._y=t.getY(e),this._z=t.getZ(e),this._w=t.getW(e),this._onChangeCallback(),this}toJSON(){return this.toArray()}_onChange(t){return this._onChangeCallback=t,this}_onChangeCallback(){}*[Symbol.iterator](){yield this._x,yield this._y,yield this._z,yield this._w}},H=class i{constructor(t=0,e=0,n=0){i.prototype.isVector3=!0,this.x=t,this.y=e,this.z=n}set(t,e,n){return n===void 0&&(n=this.z),this.x=t,this.y=e,this.z=n,this}setScalar(t){return this.x=t,this.y=t,this.z=t,this}setX(t){return this.x=t,this}setY(t){return this.y=t,this}setZ(t){return this.z=t,this}setComponent(t,e){switch(t){case 0:this.x=e;break;case 1:this.y=e;break;case 2:this.z=e;break;default:throw new Error("index is out of range: "+t)}return this}getComponent(t){switch(t){case 0:return this.x;case 1:return this.y;case 2:return this.z;default:throw new Error("index is out of range: "+t)}}clone(){return new this.constructor(this.x,this.y,this.z)}copy(t){return this.x=t.x,this.y=t.y,this.z=t.z,this}add(t){return this.x+=t.x,this.y+=t.y,this.z+=t.z,this}addScalar(t){return this.x+=t,this.y+=t,this.z+=t,this}addVectors(t,e){return this.x=t.x+e.x,this.y=t.y+e.y,this.z=t.z+e.z,this}addScaledVector(t,e){return this.x+=t.x*e,this.y+=t.y*e,this.z+=t.z*e,this}sub(t){return this.x-=t.x,this.y-=t.y,this.z-=t.z,this}subScalar(t){return this.x-=t,this.y-=t,this.z-=t,this}subVectors(t,e){return this.x=t.x-e.x,this.y=t.y-e.y,this.z=t.z-e.z,this}multiply(t){return this.x*=t.x,this.y*=t.y,this.z*=t.z,this}multiplyScalar(t){return this.x*=t,this.y*=t,this.z*=t,this}multiplyVectors(t,e){return this.x=t.x*e.x,this.y=t.y*e.y,this.z=t.z*e.z,this}applyEuler(t){return this.applyQuaternion(Hu.setFromEuler(t))}applyAxisAngle(t,e){return this.applyQuaternion(Hu.setFromAxisAngle(t,e))}applyMatrix3(t){let e=this.x,n=this.y,s=this.z,r=t.elements;return this.x=r[0]*e+r[3]*n+r[6]*s,this.y=r[1]*e+r[4]*n+r[7]*s,this.z=r[2]*e+r[5]*n+r[8]*s,this}applyNormalMatrix(t){return this.applyMatrix3(t).normalize()}applyMatrix4(t){let e=this.x,n=this.y,s=this.z,r=t.elements,o=1/(r[3]*e+r[7]*n+r[11]*s+r[15]);return this.x=(r[0]*e+r[4]*n+r[8]*s+r[12])*o,this.y=(r[1]*e+r[5]*n+r[9]*s+r[13])*o,this.z=(r[2]*e+r[6]*n+r[10]*s+r[14])*o,this}applyQuaternion(t){let e=this.x,n=this.y,s=this.z,r=t.x,o=t.y,a=t.z,l=t.w,c=2*(o*s-a*n),u=2*(a*e-r*s),f=2*(r*n-o*e);return this.x=e+l*c+o*f-a*u,this.y=n+l*u+a*c-r*f,this.z=s+l*f+r*u-o*c,this}project(t){return this.applyMatrix4(t.matrixWorldInverse).applyMatrix4(t.projectionMatrix)}unproject(t){return this.applyMatrix4(t.projectionMatrixInverse).applyMatrix4(t.matrixWorld)}transformDirection(t){let e=this.x,n=this.y,s=this.z,r=t.elements;return this.x=r[0]*e+r[4]*n+r[8]*s,this.y=r[1]*e+r[5]*n+r[9]*s,this.z=r[2]*e+r[6]*n+r[10]*s,this.normalize()}divide(t){return this.x/=t.x,this.y/=t.y,this.z/=t.z,this}divideScalar(t){return this.multiplyScalar(1/t)}min(t){return this.x=Math.min(this.x,t.x),this.y=Math.min(this.y,t.y),this.z=Math.min(this.z,t.z),this}max(t){return this.x=Math.max(this.x,t.x),this.y=Math.max(this.y,t.y),this.z=Math.max(this.z,t.z),this}clamp(t,e){return this.x=Math.max(t.x,Math.min(e.x,this.x)),this.y=Math.max(t.y,Math.min(e.y,this.y)),this.z=Math.max(t.z,Math.min(e.z,this.z)),this}clampScalar(t,e){return this.x=Math.max(t,Math.min(e,this.x)),this.y=Math.max(t,Math.min(e,this.y)),this.z=Math.max(t,Math.min(e,this.z)),this}clampLength(t,e){let n=this.length();return this.divideScalar(n||1).multiplyScalar(Math.max(t,Math.min(e,n)))}floor(){return this.x=Math.floor(this.x),this.y=Math.floor(this.y),this.z=Math.floor(this.z),this}ceil(){return this.x=Math.ceil(this.x),this.y=Math.ceil(this.y),this.z=Math.ceil(this.z),this}round(){return this.x=Math.round(this.x),this.y=Math.round(this.y),this.z=Math.round(this.z),this}roundToZero(){return this.x=Math.trunc(this.x),this.y=Math.trunc(this.y),this.z=Math.trunc(this.z),this}negate(){return this.x=-this.x,this.y=-this.y,this.z=-this.z,this}dot(t){return this.x*t.x+this.y*t.y+this.z*t.z}lengthSq(){return this.x*this.x+this.y*this.y+this.z*this.z}length(){return Math.sqrt(this.x*this.x+this.y*this.y+this.z*this.z)}manhattanLength(){return Math.abs(this.x)+Math.abs(this.y)+Math.abs(this.z)}normalize(){return this.divideScalar(this.length()||1)}setLength(t){return this.normalize().multiplyScalar(t)}lerp(t,e){return this.x+=(t.x-this.x)*e,this.y+=(t.y-this.y)*e,this.z+=(t.z-this.z)*e,this}lerpVectors(t,e,n){return this.x=t.x+(e.x-t.x)*n,this.y=t.y+(e.y-t.y)*n,this.z=t.z+(e.z-t.z)*n,this}cross(t){return this.crossVectors(this,t)}crossVectors(t,e){let n=t.x,s=t.y,r=t.z,o=e.x,a=e.y,l=e.z;return this.x=s*l-r*a,this.y=r*o-n*l,this.z=n*a-s*o,this}projectOnVector(t){let e=t.lengthSq();if(e===0)return this.set(0,0,0);let n=t.dot(this)/e;return this.copy(t).multiplyScalar(n)}projectOnPlane(t){return yl.copy(this).projectOnVector(t),this.sub(yl)}reflect(t){return this.sub(yl.copy(t).multiplyScalar(2*this.dot(t)))}angleTo(t){let e=Math.sqrt(this.lengthSq()*t.lengthSq());if(e===0)return Math.PI/2;let n=this.dot(t)/e;return Math.acos(fn(n,-1,1))}distanceTo(t){return Math.sqrt(this.distanceToSquared(t))}distanceToSquared(t){let e=this.x-t.x,n=this.y-t.y,s=this.z-t.z;return e*e+n*n+s*s}manhattanDistanceTo(t){return Math.abs(this.x-t.x)+Math.abs(this.y-t.y)+Math.abs(this.z-t.z)}setFromSpherical(t){return this.setFromSphericalCoords(t.radius,t.phi,t.theta)}setFromSphericalCoords(t,e,n){let s=Math.sin(e)*t;return this.x=s*Math.sin(n),this.y=Math.cos(e)*t,this.z=s*Math.cos(n),this}setFromCylindrical(t){return this.setFromCylindricalCoords(t.radius,t.theta,t.y)}setFromCylindricalCoords(t,e,n){return this.x=t*Math.sin(e),this.y=n,this.z=t*Math.cos(e),this}setFromMatrixPosition(t){let e=t.elements;return this.x=e[12],this.y=e[13],this.z=e[14],this}setFromMatrixScale(t){let e=this.setFromMatrixColumn(t,0).length(),n=this.setFromMatrixColumn(t,1).length(),s=this.setFromMatrixColumn(t,2).length();return this.x=e,this.y=n,this.z=s,this}setFromMatrixColumn(t,e){return this.fromArray(t.elements,e*4)}setFromMatrix3Column(t,e){return this.fromArray(t.elements,e*3)}setFromEuler(t){return this.x=t._x,this.y=t._y,this.z=t._z,this}setFromColor(t){return this.x=t.r,this.y=t.g,this.z=t.b,this}equals(t){return t.x===this.x&&t.y===this.y&&t.z===this.z}fromArray(t,e=0){return this.x=t[e],this.y=t[e+1],this.z=t[e+2],this}toArray(t=[],e=0){return t[e]=this.x,t[e+1]=this.y,t[e+2]=this.z,t}fromBufferAttribute(t,e){return this.x=t.getX(e),this.y=t.getY(e),this.z=t.getZ(e),this}random(){return this.x=Math.random(),this.y=Math.random(),this.z=Math.random(),this}randomDirection(){let t=Math.random()*Math.PI*2,e=Math.random()*2-1,n=Math.sqrt(1-e*e);return this.x=n*Math.cos(t),this.y=e,this.z=n*Math.sin(t),this}*[Symbol.iterator](){yield this.x,yield this.y,yield this.z}},yl=new H,Hu=new oi,Ts=class{constructor(t=new H(1/0,1/0,1/0),e=new H(-1/0,-1/0,-1/0)){this.isBox3=!0,this.min=t,this.max=e}set(t,e){return this.min.copy(t),this.max.copy(e),this}setFromArray(t){this.makeEmpty();for(let e=0,n=t.length;e<n;e+=3)this.expandByPoint(Qn.fromArray(t,e));return this}setFromBufferAttribute(t){this.makeEmpty();for(let e=0,n=t.count;e<n;e++)this.expandByPoint(Qn.fromBufferAttribute(t,e));return this}setFromPoints(t){this.makeEmpty();for(let e=0,n=t.length;e<n;e++)this.expandByPoint(t[e]);return this}setFromCenterAndSize(t,e){let n=Qn.copy(e).multiplyScalar(.5);return this.min.copy(t).sub(n),this.max.copy(t).add(n),this}setFromObject(t,e=!1){return this.makeEmpty(),this.expandByObject(t,e)}clone(){return new this.constructor().copy(this)}copy(t){return this.min.copy(t.min),this.max.copy(t.max),this}makeEmpty(){return this.min.x=this.min.y=this.min.z=1/0,this.max.x=this.max.y=this.max.z=-1/0,this}isEmpty(){return this.max.x<this.min.x||this.max.y<this.min.y||this.max.z<this.min.z}getCenter(t){return this.isEmpty()?t.set(0,0,0):t.addVectors(this.min,this.max).multiplyScalar(.5)}getSize(t){return this.isEmpty()?t.set(0,0,0):t.subVectors(this.max,this.min)}expandByPoint(t){return this.min.min(t),this.max.max(t),this}expandByVector(t){return this.min.sub(t),this.max.add(t),this}expandByScalar(t){return this.min.addScalar(-t),this.max.addScalar(t),this}expandByObject(t,e=!1){t.updateWorldMatrix(!1,!1);let n=t.geometry;if(n!==void 0){let r=n.getAttribute("position");if(e===!0&&r!==void 0&&t.isInstancedMesh!==!0)for(let o=0,a=r.count;o<a;o++)t.isMesh===!0?t.getVertexPosition(o,Qn):Qn.fromBufferAttribute(r,o),Qn.applyMatrix4(t.matrixWorld),this.expandByPoint(Qn);else t.boundingBox!==void 0?(t.boundingBox===null&&t.computeBoundingBox(),Po.copy(t.boundingBox)):(n.boundingBox===null&&n.computeBoundingBox(),Po.copy(n.boundingBox)),Po.applyMatrix4(t.matrixWorld),this.union(Po)}let s=t.children;for(let r=0,o=s.length;r<o;r++)this.expandByObject(s[r],e);return this}containsPoint(t){return t.x>=this.min.x&&t.x<=this.max.x&&t.y>=this.min.y&&t.y<=this.max.y&&t.z>=this.min.z&&t.z<=this.max.z}containsBox(t){return this.min.x<=t.min.x&&t.max.x<=this.max.x&&this.min.y<=t.min.y&&t.max.y<=this.max.y&&this.min.z<=t.min.z&&t.max.z<=this.max.z}getParameter(t,e){return e.set((t.x-this.min.x)/(this.max.x-this.min.x),(t.y-this.min.y)/(this.max.y-this.min.y),(t.z-this.min.z)/(this.max.z-this.min.z))}intersectsBox(t){return t.max.x>=this.min.x&&t.min.x<=this.max.x&&t.max.y>=this.min.y&&t.min.y<=this.max.y&&t.max.z>=this.min.z&&t.min.z<=this.max.z}intersectsSphere(t){return this.clampPoint(t.center,Qn),Qn.distanceToSquared(t.center)<=t.radius*t.radius}intersectsPlane(t){let e,n;return t.normal.x>0?(e=t.normal.x*this.min.x,n=t.normal.x*this.max.x):(e=t.normal.x*this.max.x,n=t.normal.x*this.min.x),t.normal.y>0?(e+=t.normal.y*this.min.y,n+=t.normal.y*this.max.y):(e+=t.normal.y*this.max.y,n+=t.normal.y*this.min.y),t.normal.z>0?(e+=t.normal.z*this.min.z,n+=t.normal.z*this.max.z):(e+=t.normal.z*this.max.z,n+=t.normal.z*this.min.z),e<=-t.constant&&n>=-t.constant}intersectsTriangle(t){if(this.isEmpty())return!1;this.getCenter(Zr),Io.subVectors(this.max,Zr),Qs.subVectors(t.a,Zr),tr.subVectors(t.b,Zr),er.subVectors(t.c,Zr),$i.subVectors(tr,Qs),Zi.subVectors(er,tr),ds.subVectors(Qs,er);let e=[0,-$i.z,$i.y,0,-Zi.z,Zi.y,0,-ds.z,ds.y,$i.z,0,-$i.x,Zi.z,0,-Zi.x,ds.z,0,-ds.x,-$i.y,$i.x,0,-Zi.y,Zi.x,0,-ds.y,ds.x,0];return!vl(e,Qs,tr,er,Io)||(e=[1,0,0,0,1,0,0,0,1],!vl(e,Qs,tr,er,Io))?!1:(Lo.crossVectors($i,Zi),e=[Lo.x,Lo.y,Lo.z],vl(e,Qs,tr,er,Io))}clampPoint(t,e){return e.copy(t).clamp(this.min,this.max)}distanceToPoint(t){return this.clampPoint(t,Qn).distanceTo(t)}getBoundingSphere(t){return this.isEmpty()?t.makeEmpty():(this.getCenter(t.center),t.radius=this.getSize(Qn).length()*.5),t}intersect(t){return this.min.max(t.min),this.max.min(t.max),this.isEmpty()&&this.makeEmpty(),this}union(t){return this.min.min(t.min),this.max.max(t.max),this}applyMatrix4(t){return this.isEmpty()?this:(Ti[0].set(this.min.x,this.min.y,this.min.z).applyMatrix4(t),Ti[1].set(this.min.x,this.min.y,this.max.z).applyMatrix4(t),Ti[2].set(this.min.x,this.max.y,this.min.z).applyMatrix4(t),Ti[3].set(this.min.x,this.max.y,this.max.z).applyMatrix4(t),Ti[4].set(this.max.x,this.min.y,this.min.z).applyMatrix4(t),Ti[5].set(this.max.x,this.min.y,this.max.z).applyMatrix4(t),Ti[6].set(this.max.x,this.max.y,this.min.z).applyMatrix4(t),Ti[7].set(this.max.x,this.max.y,this.max.z).applyMatrix4(t),this.setFromPoints(Ti),this)}translate(t){return this.min.add(t),this.max.add(t),this}equals(t){return t.min.equals(this.min)&&t.max.equals(this.max)}},Ti=[new H,new H,new H,new H,new H,new H,new H,new H],Qn=new H,Po=new Ts,Qs=new H,tr=new H,er=new H,$i=new H,Zi=new H,ds=new H,Zr=new H,Io=new H,Lo=new H,ps=new H;function vl(i,t,e,n,s){for(let r=0,o=i.length-3;r<=o;r+=3){ps.fromArray(i,r);let a=s.x*Math.abs(ps.x)+s.y*Math.abs(ps.y)+s.z*Math.abs(ps.z),l=t.dot(ps),c=e.dot(ps),u=n.dot(ps);if(Math.max(-Math.max(l,c,u),Math.min(l,c,u))>a)return!1}return!0}var vg=new Ts,Jr=new H,Ml=new H,br=class{constructor(t=new H,e=-1){this.isSphere=!0,this.center=t,this.radius=e}set(t,e){return this.center.copy(t),this.radius=e,this}setFromPoints(t,e){let n=this.center;e!==void 0?n.copy(e):vg.setFromPoints(t).getCenter(n);let s=0;for(let r=0,o=t.length;r<o;r++)s=Math.max(s,n.distanceToSquared(t[r]));return this.radius=Math.sqrt(s),this}copy(t){return this.center.copy(t.center),this.radius=t.radius,this}isEmpty(){return this.radius<0}makeEmpty(){return this.center.set(0,0,0),this.radius=-1,this}containsPoint(t){return t.distanceToSquared(this.center)<=this.radius*this.radius}distanceToPoint(t){return t.distanceTo(this.center)-this.radius}intersectsSphere(t){let e=this.radius+t.radius;return t.center.distanceToSquared(this.center)<=e*e}intersectsBox(t){return t.intersectsSphere(this)}intersectsPlane(t){return Math.abs(t.distanceToPoint(this.center))<=this.radius}clampPoint(t,e){let n=this.center.distanceToSquared(t);return e.copy(t),n>this.radius*this.radius&&(e.sub(this.center).normalize(),e.multiplyScalar(this.radius).add(this.center)),e}getBoundingBox(t){return this.isEmpty()?(t.makeEmpty(),t):(t.set(this.center,this.center),t.expandByScalar(this.radius),t)}applyMatrix4(t){return this.center.applyMatrix4(t),this.radius=this.radius*t.getMaxScaleOnAxis(),this}translate(t){return this.center.add(t),this}expandByPoint(t){if(this.isEmpty())return this.center.copy(t),this.radius=0,this;Jr.subVectors(t,this.center);let e=Jr.lengthSq();if(e>this.radius*this.radius){let n=Math.sqrt(e),s=(n-this.radius)*.5;this.center.addScaledVector(Jr,s/n),this.radius+=s}return this}union(t){return t.isEmpty()?this:this.isEmpty()?(this.copy(t),this):(this.center.equals(t.center)===!0?this.radius=Math.max(this.radius,t.radius):(Ml.subVectors(t.center,this.center).setLength(t.radius),this.expandByPoint(Jr.copy(t.center).add(Ml)),this.expandByPoint(Jr.copy(t.center).sub(Ml))),this)}equals(t){return t.center.equals(this.center)&&t.radius===this.radius}clone(){return new this.constructor().copy(this)}},Ai=new H,Sl=new H,Do=new H,Ji=new H,bl=new H,Uo=new H,wl=new H,wr=class{constructor(t=new H,e=new H(0,0,-1)){this.origin=t,this.direction=e}set(t,e){return this.origin.copy(t),this.direction.copy(e),this}copy(t){return this.origin.copy(t.origin),this.direction.copy(t.direction),this}at(t,e){return e.copy(this.origin).addScaledVector(this.direction,t)}lookAt(t){return this.direction.copy(t).sub(this.origin).normalize(),this}recast(t){return this.origin.copy(this.at(t,Ai)),this}closestPointToPoint(t,e){e.subVectors(t,this.origin);let n=e.dot(this.direction);return n<0?e.copy(this.origin):e.copy(this.origin).addScaledVector(this.direction,n)}distanceToPoint(t){return Math.sqrt(this.distanceSqToPoint(t))}distanceSqToPoint(t){let e=Ai.subVectors(t,this.origin).dot(this.direction);return e<0?this.origin.distanceToSquared(t):(Ai.copy(this.origin).addScaledVector(this.direction,e),Ai.distanceToSquared(t))}distanceSqToSegment(t,e,n,s){Sl.copy(t).add(e).multiplyScalar(.5),Do.copy(e).sub(t).normalize(),Ji.copy(this.origin).sub(Sl);let r=t.distanceTo(e)*.5,o=-this.direction.dot(Do),a=Ji.dot(this.direction),l=-Ji.dot(Do),c=Ji.lengthSq(),u=Math.abs(1-o*o),f,h,p,_;if(u>0)if(f=o*l-a,h=o*a-l,_=r*u,f>=0)if(h>=-_)if(h<=_){let x=1/u;f*=x,h*=x,p=f*(f+o*h+2*a)+h*(o*f+h+2*l)+c}else h=r,f=Math.max(0,-(o*h+a)),p=-f*f+h*(h+2*l)+c;else h=-r,f=Math.max(0,-(o*h+a)),p=-f*f+h*(h+2*l)+c;else h<=-_?(f=Math.max(0,-(-o*r+a)),h=f>0?-r:Math.min(Math.max(-r,-l),r),p=-f*f+h*(h+2*l)+c):h<=_?(f=0,h=Math.min(Math.max(-r,-l),r),p=h*(h+2*l)+c):(f=Math.max(0,-(o*r+a)),h=f>0?r:Math.min(Math.max(-r,-l),r),p=-f*f+h*(h+2*l)+c);else h=o>0?-r:r,f=Math.max(0,-(o*h+a)),p=-f*f+h*(h+2*l)+c;return n&&n.copy(this.origin).addScaledVector(this.direction,f),s&&s.copy(Sl).addScaledVector(Do,h),p}intersectSphere(t,e){Ai.subVectors(t.center,this.origin);let n=Ai.dot(this.direction),s=Ai.dot(Ai)-n*n,r=t.radius*t.radius;if(s>r)return null;let o=Math.sqrt(r-s),a=n-o,l=n+o;return l<0?null:a<0?this.at(l,e):this.at(a,e)}intersectsSphere(t){return this.distanceSqToPoint(t.center)<=t.radius*t.radius}distanceToPlane(t){let e=t.normal.dot(this.direction);if(e===0)return t.distanceToPoint(this.origin)===0?0:null;let n=-(this.origin.dot(t.normal)+t.constant)/e;return n>=0?n:null}intersectPlane(t,e){let n=this.distanceToPlane(t);return n===null?null:this.at(n,e)}intersectsPlane(t){let e=t.distanceToPoint(this.origin);return e===0||t.normal.dot(this.direction)*e<0}intersectBox(t,e){let n,s,r,o,a,l,c=1/this.direction.x,u=1/this.direction.y,f=1/this.direction.z,h=this.origin;return c>=0?(n=(t.min.x-h.x)*c,s=(t.max.x-h.x)*c):(n=(t.max.x-h.x)*c,s=(t.min.x-h.x)*c),u>=0?(r=(t.min.y-h.y)*u,o=(t.max.y-h.y)*u):(r=(t.max.y-h.y)*u,o=(t.min.y-h.y)*u),n>o||r>s||((r>n||isNaN(n))&&(n=r),(o<s||isNaN(s))&&(s=o),f>=0?(a=(t.min.z-h.z)*f,l=(t.max.z-h.z)*f):(a=(t.max.z-h.z)*f,l=(t.min.z-h.z)*f),n>l||a>s)||((a>n||n!==n)&&(n=a),(l<s||s!==s)&&(s=l),s<0)?null:this.at(n>=0?n:s,e)}intersectsBox(t){return this.intersectBox(t,Ai)!==null}intersectTriangle(t,e,n,s,r){bl.subVectors(e,t),Uo.subVectors(n,t),wl.crossVectors(bl,Uo);let o=this.direction.dot(wl),a;if(o>0){if(s)return null;a=1}else if(o<0)a=-1,o=-o;else return null;Ji.subVectors(this.origin,t);let l=a*this.direction.dot(Uo.crossVectors(Ji,Uo));if(l<0)return null;let c=a*this.direction.dot(bl.cross(Ji));if(c<0||l+c>o)return null;let u=-a*Ji.dot(wl);return u<0?null:this.at(u/o,r)}applyMatrix4(t){return this.origin.applyMatrix4(t),this.direction.transformDirection(t),this}equals(t){return t.origin.equals(this.origin)&&t.direction.equals(this.direction)}clone(){return new this.constructor().copy(this)}},We=class i{constructor(t,e,n,s,r,o,a,l,c,u,f,h,p,_,x,m){i.prototype.isMatrix4=!0,this.elements=[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1],t!==void 0&&this.set(t,e,n,s,r,o,a,l,c,u,f,h,p,_,x,m)}set(t,e,n,s,r,o,a,l,c,u,f,h,p,_,x,m){let d=this.elements;return d[0]=t,d[4]=e,d[8]=n,d[12]=s,d[1]=r,d[5]=o,d[9]=a,d[13]=l,d[2]=c,d[6]=u,d[10]=f,d[14]=h,d[3]=p,d[7]=_,d[11]=x,d[15]=m,this}identity(){return this.set(1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1),this}clone(){return new i().fromArray(this.elements)}copy(t){let e=this.elements,n=t.elements;return e[0]=n[0],e[1]=n[1],e[2]=n[2],e[3]=n[3],e[4]=n[4],e[5]=n[5],e[6]=n[6],e[7]=n[7],e[8]=n[8],e[9]=n[9],e[10]=n[10],e[11]=n[11],e[12]=n[12],e[13]=n[13],e[14]=n[14],e[15]=n[15],this}copyPosition(t){let e=this.elements,n=t.elements;return e[12]=n[12],e[13]=n[13],e[14]=n[14],this}setFromMatrix3(t){let e=t.elements;return this.set(e[0],e[3],e[6],0,e[1],e[4],e[7],0,e[2],e[5],e[8],0,0,0,0,1),this}extractBasis(t,e,n){return t.setFromMatrixColumn(this,0),e.setFromMatrixColumn(this,1),n.setFromMatrixColumn(this,2),this}makeBasis(t,e,n){return this.set(t.x,e.x,n.x,0,t.y,e.y,n.y,0,t.z,e.z,n.z,0,0,0,0,1),this}extractRotation(t){let e=this.elements,n=t.elements,s=1/nr.setFromMatrixColumn(t,0).length(),r=1/nr.setFromMatrixColumn(t,1).length(),o=1/nr.setFromMatrixColumn(t,2).length();return e[0]=n[0]*s,e[1]=n[1]*s,e[2]=n[2]*s,e[3]=0,e[4]=n[4]*r,e[5]=n[5]*r,e[6]=n[6]*r,e[7]=0,e[8]=n[8]*o,e[9]=n[9]*o,e[10]=n[10]*o,e[11]=0,e[12]=0,e[13]=0,e[14]=0,e[15]=1,this}makeRotationFromEuler(t){let e=this.elements,n=t.x,s=t.y,r=t.z,o=Math.cos(n),a=Math.sin(n),l=Math.cos(s),c=Math.sin(s),u=Math.cos(r),f=Math.sin(r);if(t.order==="XYZ"){let h=o*u,p=o*f,_=a*u,x=a*f;e[0]=l*u,e[4]=-l*f,e[8]=c,e[1]=p+_*c,e[5]=h-x*c,e[9]=-a*l,e[2]=x-h*c,e[6]=_+p*c,e[10]=o*l}else if(t.order==="YXZ"){let h=l*u,p=l*f,_=c*u,x=c*f;e[0]=h+x*a,e[4]=_*a-p,e[8]=o*c,e[1]=o*f,e[5]=o*u,e[9]=-a,e[2]=p*a-_,e[6]=x+h*a,e[10]=o*l}else if(t.order==="ZXY"){let h=l*u,p=l*f,_=c*u,x=c*f;e[0]=h-x*a,e[4]=-o*f,e[8]=_+p*a,e[1]=p+_*a,e[5]=o*u,e[9]=x-h*a,e[2]=-o*c,e[6]=a,e[10]=o*l}else if(t.order==="ZYX"){let h=o*u,p=o*f,_=a*u,x=a*f;e[0]=l*u,e[4]=_*c-p,e[8]=h*c+x,e[1]=l*f,e[5]=x*c+h,e[9]=p*c-_,e[2]=-c,e[6]=a*l,e[10]=o*l}else if(t.order==="YZX"){let h=o*l,p=o*c,_=a*l,x=a*c;e[0]=l*u,e[4]=x-h*f,e[8]=_*f+p,e[1]=f,e[5]=o*u,e[9]=-a*u,e[2]=-c*u,e[6]=p*f+_,e[10]=h-x*f}else if(t.order==="XZY"){let h=o*l,p=o*c,_=a*l,x=a*c;e[0]=l*u,e[4]=-f,e[8]=c*u,e[1]=h*f+x,e[5]=o*u,e[9]=p*f-_,e[2]=_*f-p,e[6]=a*u,e[10]=x*f+h}return e[3]=0,e[7]=0,e[11]=0,e[12]=0,e[13]=0,e[14]=0,e[15]=1,this}makeRotationFromQuaternion(t){return this.compose(Mg,t,Sg)}lookAt(t,e,n){let s=this.elements;return Rn.subVectors(t,e),Rn.lengthSq()===0&&(Rn.z=1),Rn.normalize(),Ki.crossVectors(n,Rn),Ki.lengthSq()===0&&(Math.abs(n.z)===1?Rn.x+=1e-4:Rn.z+=1e-4,Rn.normalize(),Ki.crossVectors(n,Rn)),Ki.normalize(),No.crossVectors(Rn,Ki),s[0]=Ki.x,s[4]=No.x,s[8]=Rn.x,s[1]=Ki.y,s[5]=No.y,s[9]=Rn.y,s[2]=Ki.z,s[6]=No.z,s[10]=Rn.z,this}multiply(t){return this.multiplyMatrices(this,t)}premultiply(t){return this.multiplyMatrices(t,this)}multiplyMatrices(t,e){let n=t.elements,s=e.elements,r=this.elements,o=n[0],a=n[4],l=n[8],c=n[12],u=n[1],f=n[5],h=n[9],p=n[13],_=n[2],x=n[6],m=n[10],d=n[14],A=n[3],w=n[7],b=n[11],D=n[15],L=s[0],I=s[4],U=s[8],E=s[12],M=s[1],C=s[5],W=s[9],V=s[13],Y=s[2],j=s[6],Z=s[10],et=s[14],K=s[3],ht=s[7],ot=s[11],mt=s[15];return r[0]=o*L+a*M+l*Y+c*K,r[4]=o*I+a*C+l*j+c*ht,r[8]=o*U+a*W+l*Z+c*ot,r[12]=o*E+a*V+l*et+c*mt,r[1]=u*L+f*M+h*Y+p*K,r[5]=u*I+f*C+h*j+p*ht,r[9]=u*U+f*W+h*Z+p*ot,r[13]=u*E+f*V+h*et+p*mt,r[2]=_*L+x*M+m*Y+d*K,r[6]=_*I+x*C+m*j+d*ht,r[10]=_*U+x*W+m*Z+d*ot,r[14]=_*E+x*V+m*et+d*mt,r[3]=A*L+w*M+b*Y+D*K,r[7]=A*I+w*C+b*j+D*ht,r[11]=A*U+w*W+b*Z+D*ot,r[15]=A*E+w*V+b*et+D*mt,this}multiplyScalar(t){let e=this.elements;return e[0]*=t,e[4]*=t,e[8]*=t,e[12]*=t,e[1]*=t,e[5]*=t,e[9]*=t,e[13]*=t,e[2]*=t,e[6]*=t,e[10]*=t,e[14]*=t,e[3]*=t,e[7]*=t,e[11]*=t,e[15]*=t,this}determinant(){let t=this.elements,e=t[0],n=t[4],s=t[8],r=t[12],o=t[1],a=t[5],l=t[9],c=t[13],u=t[2],f=t[6],h=t[10],p=t[14],_=t[3],x=t[7],m=t[11],d=t[15];return _*(+r*l*f-s*c*f-r*a*h+n*c*h+s*a*p-n*l*p)+x*(+e*l*p-e*c*h+r*o*h-s*o*p+s*c*u-r*l*u)+m*(+e*c*f-e*a*p-r*o*f+n*o*p+r*a*u-n*c*u)+d*(-s*a*u-e*l*f+e*a*h+s*o*f-n*o*h+n*l*u)}transpose(){let t=this.elements,e;return e=t[1],t[1]=t[4],t[4]=e,e=t[2],t[2]=t[8],t[8]=e,e=t[6],t[6]=t[9],t[9]=e,e=t[3],t[3]=t[12],t[12]=e,e=t[7],t[7]=t[13],t[13]=e,e=t[11],t[11]=t[14],t[14]=e,this}setPosition(t,e,n){let s=this.elements;return t.isVector3?(s[12]=t.x,s[13]=t.y,s[14]=t.z):(s[12]=t,s[13]=e,s[14]=n),this}invert(){let t=this.elements,e=t[0],n=t[1],s=t[2],r=t[3],o=t[4],a=t[5],l=t[6],c=t[7],u=t[8],f=t[9],h=t[10],p=t[11],_=t[12],x=t[13],m=t[14],d=t[15],A=f*m*c-x*h*c+x*l*p-a*m*p-f*l*d+a*h*d,w=_*h*c-u*m*c-_*l*p+o*m*p+u*l*d-o*h*d,b=u*x*c-_*f*c+_*a*p-o*x*p-u*a*d+o*f*d,D=_*f*l-u*x*l-_*a*h+o*x*h+u*a*m-o*f*m,L=e*A+n*w+s*b+r*D;if(L===0)return this.set(0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0);let I=1/L;return t[0]=A*I,t[1]=(x*h*r-f*m*r-x*s*p+n*m*p+f*s*d-n*h*d)*I,t[2]=(a*m*r-x*l*r+x*s*c-n*m*c-a*s*d+n*l*d)*I,t[3]=(f*l*r-a*h*r-f*s*c+n*h*c+a*s*p-n*l*p)*I,t[4]=w*I,t[5]=(u*m*r-_*h*r+_*s*p-e*m*p-u*s*d+e*h*d)*I,t[6]=(_*l*r-o*m*r-_*s*c+e*m*c+o*s*d-e*l*d)*I,t[7]=(o*h*r-u*l*r+u*s*c-e*h*c-o*s*p+e*l*p)*I,t[8]=b*I,t[9]=(_*f*r-u*x*r-_*n*p+e*x*p+u*n*d-e*f*d)*I,t[10]=(o*x*r-_*a*r+_*n*c-e*x*c-o*n*d+e*a*d)*I,t[11]=(u*a*r-o*f*r-u*n*c+e*f*c+o*n*p-e*a*p)*I,t[12]=D*I,t[13]=(u*x*s-_*f*s+_*n*h-e*x*h-u*n*m+e*f*m)*I,t[14]=(_*a*s-o*x*s-_*n*l+e*x*l+o*n*m-e*a*m)*I,t[15]=(o*f*s-u*a*s+u*n*l-e*f*l-o*n*h+e*a*h)*I,this}scale(t){let e=this.elements,n=t.x,s=t.y,r=t.z;return e[0]*=n,e[4]*=s,e[8]*=r,e[1]*=n,e[5]*=s,e[9]*=r,e[2]*=n,e[6]*=s,e[10]*=r,e[3]*=n,e[7]*=s,e[11]*=r,this}getMaxScaleOnAxis(){let t=this.elements,e=t[0]*t[0]+t[1]*t[1]+t[2]*t[2],n=t[4]*t[4]+t[5]*t[5]+t[6]*t[6],s=t[8]*t[8]+t[9]*t[9]+t[10]*t[10];return Math.sqrt(Math.max(e,n,s))}makeTranslation(t,e,n){return t.isVector3?this.set(1,0,0,t.x,0,1,0,t.y,0,0,1,t.z,0,0,0,1):this.set(1,0,0,t,0,1,0,e,0,0,1,n,0,0,0,1),this}makeRotationX(t){let e=Math.cos(t),n=Math.sin(t);return this.set(1,0,0,0,0,e,-n,0,0,n,e,0,0,0,0,1),this}makeRotationY(t){let e=Math.cos(t),n=Math.sin(t);return this.set(e,0,n,0,0,1,0,0,-n,0,e,0,0,0,0,1),this}makeRotationZ(t){let e=Math.cos(t),n=Math.sin(t);return this.set(e,-n,0,0,n,e,0,0,0,0,1,0,0,0,0,1),this}makeRotationAxis(t,e){let n=Math.cos(e),s=Math.sin(e),r=1-n,o=t.x,a=t.y,l=t.z,c=r*o,u=r*a;return this.set(c*o+n,c*a-s*l,c*l+s*a,0,c*a+s*l,u*a+n,u*l-s*o,0,c*l-s*a,u*l+s*o,r*l*l+n,0,0,0,0,1),this}makeScale(t,e,n){return this.set(t,0,0,0,0,e,0,0,0,0,n,0,0,0,0,1),this}makeShear(t,e,n,s,r,o){return this.set(1,n,r,0,t,1,o,0,e,s,1,0,0,0,0,1),this}compose(t,e,n){let s=this.elements,r=e._x,o=e._y,a=e._z,l=e._w,c=r+r,u=o+o,f=a+a,h=r*c,p=r*u,_=r*f,x=o*u,m=o*f,d=a*f,A=l*c,w=l*u,b=l*f,D=n.x,L=n.y,I=n.z;return s[0]=(1-(x+d))*D,s[1]=(p+b)*D,s[2]=(_-w)*D,s[3]=0,s[4]=(p-b)*L,s[5]=(1-(h+d))*L,s[6]=(m+A)*L,s[7]=0,s[8]=(_+w)*I,s[9]=(m-A)*I,s[10]=(1-(h+x))*I,s[11]=0,s[12]=t.x,s[13]=t.y,s[14]=t.z,s[15]=1,this}decompose(t,e,n){let s=this.elements,r=nr.set(s[0],s[1],s[2]).length(),o=nr.set(s[4],s[5],s[6]).length(),a=nr.set(s[8],s[9],s[10]).length();this.determinant()<0&&(r=-r),t.x=s[12],t.y=s[13],t.z=s[14],ti.copy(this);let c=1/r,u=1/o,f=1/a;return ti.elements[0]*=c,ti.elements[1]*=c,ti.elements[2]*=c,ti.elements[4]*=u,ti.elements[5]*=u,ti.elements[6]*=u,ti.elements[8]*=f,ti.elements[9]*=f,ti.elements[10]*=f,e.setFromRotationMatrix(ti),n.x=r,n.y=o,n.z=a,this}makePerspective(t,e,n,s,r,o,a=Di){let l=this.elements,c=2*r/(e-t),u=2*r/(n-s),f=(e+t)/(e-t),h=(n+s)/(n-s),p,_;if(a===Di)p=-(o+r)/(o-r),_=-2*o*r/(o-r);else if(a===ra)p=-o/(o-r),_=-o*r/(o-r);else throw new Error("THREE.Matrix4.makePerspective(): Invalid coordinate system: "+a);return l[0]=c,l[4]=0,l[8]=f,l[12]=0,l[1]=0,l[5]=u,l[9]=h,l[13]=0,l[2]=0,l[6]=0,l[10]=p,l[14]=_,l[3]=0,l[7]=0,l[11]=-1,l[15]=0,this}makeOrthographic(t,e,n,s,r,o,a=Di){let l=this.elements,c=1/(e-t),u=1/(n-s),f=1/(o-r),h=(e+t)*c,p=(n+s)*u,_,x;if(a===Di)_=(o+r)*f,x=-2*f;else if(a===ra)_=r*f,x=-1*f;else throw new Error("THREE.Matrix4.makeOrthographic(): Invalid coordinate system: "+a);return l[0]=2*c,l[4]=0,l[8]=0,l[12]=-h,l[1]=0,l[5]=2*u,l[9]=0,l[13]=-p,l[2]=0,l[6]=0,l[10]=x,l[14]=-_,l[3]=0,l[7]=0,l[11]=0,l[15]=1,this}equals(t){let e=this.elements,n=t.elements;for(let s=0;s<16;s++)if(e[s]!==n[s])return!1;return!0}fromArray(t,e=0){for(let n=0;n<16;n++)this.elements[n]=t[n+e];return this}toArray(t=[],e=0){let n=this.elements;return t[e]=n[0],t[e+1]=n[1],t[e+2]=n[2],t[e+3]=n[3],t[e+4]=n[4],t[e+5]=n[5],t[e+6]=n[6],t[e+7]=n[7],t[e+8]=n[8],t[e+9]=n[9],t[e+10]=n[10],t[e+11]=n[11],t[e+12]=n[12],t[e+13]=n[13],t[e+14]=n[14],t[e+15]=n[15],t}},nr=new H,ti=new We,Mg=new H(0,0,0),Sg=new H(1,1,1),Ki=new H,No=new H,Rn=new H,Gu=new We,Wu=new oi,Bi=class i{constructor(t=0,e=0,n=0,s=i.DEFAULT_ORDER){this.isEuler=!0,this._x=t,this._y=e,this._z=n,this._order=s}get x(){return this._x}set x(t){this._x=t,this._onChangeCallback()}get y(){return this._y}set y(t){this._y=t,this._onChangeCallback()}get z(){return this._z}set z(t){this._z=t,this._onChangeCallback()}get order(){return this._order}set order(t){this._order=t,this._onChangeCallback()}set(t,e,n,s=this._order){return this._x=t,this._y=e,this._z=n,this._order=s,this._onChangeCallback(),this}clone(){return new this.constructor(this._x,this._y,this._z,this._order)}copy(t){return this._x=t._x,this._y=t._y,this._z=t._z,this._order=t._order,this._onChangeCallback(),this}setFromRotationMatrix(t,e=this._order,n=!0){let s=t.elements,r=s[0],o=s[4],a=s[8],l=s[1],c=s[5],u=s[9],f=s[2],h=s[6],p=s[10];switch(e){case"XYZ":this._y=Math.asin(fn(a,-1,1)),Math.abs(a)<.9999999?(this._x=Math.atan2(-u,p),this._z=Math.atan2(-o,r)):(this._x=Math.atan2(h,c),this._z=0);break;case"YXZ":this._x=Math.asin(-fn(u,-1,1)),Math.abs(u)<.9999999?(this._y=Math.atan2(a,p),this._z=Math.atan2(l,c)):(this._y=Math.atan2(-f,r),this._z=0);break;case"ZXY":this._x=Math.asin(fn(h,-1,1)),Math.abs(h)<.9999999?(this._y=Math.atan2(-f,p),this._z=Math.atan2(-o,c)):(this._y=0,this._z=Math.atan2(l,r));break;case"ZYX":this._y=Math.asin(-fn(f,-1,1)),Math.abs(f)<.9999999?(this._x=Math.atan2(h,p),this._z=Math.atan2(l,r)):(this._x=0,this._z=Math.atan2(-o,c));break;case"YZX":this._z=Math.asin(fn(l,-1,1)),Math.abs(l)<.9999999?(this._x=Math.atan2(-u,c),this._y=Math.atan2(-f,r)):(this._x=0,this._y=Math.atan2(a,p));break;case"XZY":this._z=Math.asin(-fn(o,-1,1)),Math.abs(o)<.9999999?(this._x=Math.atan2(h,c),this._y=Math.atan2(a,r)):(this._x=Math.atan2(-u,p),this._y=0);break;default:console.warn("THREE.Euler: .setFromRotationMatrix() encountered an unknown order: "+e)}return this._order=e,n===!0&&this._onChangeCallback(),this}setFromQuaternion(t,e,n){return Gu.makeRotationFromQuaternion(t),this.setFromRotationMatrix(Gu,e,n)}setFromVector3(t,e=this._order){return this.set(t.x,t.y,t.z,e)}reorder(t){return Wu.setFromEuler(this),this.setFromQuaternion(Wu,t)}equals(t){return t._x===this._x&&t._y===this._y&&t._z===this._z&&t._order===this._order}fromArray(t){return this._x=t[0],this._y=t[1],this._z=t[2],t[3]!==void 0&&(this._order=t[3]),this._onChangeCallback(),this}toArray(t=[],e=0){return t[e]=this._x,t[e+1]=this._y,t[e+2]=this._z,t[e+3]=this._order,t}_onChange(t){return this._onChangeCallback=t,this}_onChangeCallback(){}*[Symbol.iterator](){yield this._x,yield this._y,yield this._z,yield this._order}};Bi.DEFAULT_ORDER="XYZ";var ca=class{constructor(){this.mask=1}set(t){this.mask=(1<<t|0)>>>0}enable(t){this.mask|=1<<t|0}enableAll(){this.mask=-1}toggle(t){this.mask^=1<<t|0}disable(t){this.mask&=~(1<<t|0)}disableAll(){this.mask=0}test(t){return(this.mask&t.mask)!==0}isEnabled(t){return(this.mask&(1<<t|0))!==0}},bg=0,Xu=new H,ir=new oi,Ci=new We,Oo=new H,Kr=new H,wg=new H,Eg=new oi,Yu=new H(1,0,0),qu=new H(0,1,0),$u=new H(0,0,1),Zu={type:"added"},Tg={type:"removed"},sr={type:"childadded",child:null},El={type:"childremoved",child:null},Yn=class i extends Oi{constructor(){super(),this.isObject3D=!0,Object.defineProperty(this,"id",{value:bg++}),this.uuid=Ar(),this.name="",this.type="Object3D",this.parent=null,this.children=[],this.up=i.DEFAULT_UP.clone();let t=new H,e=new Bi,n=new oi,s=new H(1,1,1);function r(){n.setFromEuler(e,!1)}function o(){e.setFromQuaternion(n,void 0,!1)}e._onChange(r),n._onChange(o),Object.defineProperties(this,{position:{configurable:!0,enumerable:!0,value:t},rotation:{configurable:!0,enumerable:!0,value:e},quaternion:{configurable:!0,enumerable:!0,value:n},scale:{configurable:!0,enumerable:!0,value:s},modelViewMatrix:{value:new We},normalMatrix:{value:new te}}),this.matrix=new We,this.matrixWorld=new We,this.matrixAutoUpdate=i.DEFAULT_MATRIX_AUTO_UPDATE,this.matrixWorldAutoUpdate=i.DEFAULT_MATRIX_WORLD_AUTO_UPDATE,this.matrixWorldNeedsUpdate=!1,this.layers=new ca,this.visible=!0,this.castShadow=!1,this.receiveShadow=!1,this.frustumCulled=!0,this.renderOrder=0,this.animations=[],this.userData={}}onBeforeShadow(){}onAfterShadow(){}onBeforeRender(){}onAfterRender(){}applyMatrix4(t){this.matrixAutoUpdate&&this.updateMatrix(),this.matrix.premultiply(t),this.matrix.decompose(this.position,this.quaternion,this.scale)}applyQuaternion(t){return this.quaternion.premultiply(t),this}setRotationFromAxisAngle(t,e){this.quaternion.setFromAxisAngle(t,e)}setRotationFromEuler(t){this.quaternion.setFromEuler(t,!0)}setRotationFromMatrix(t){this.quaternion.setFromRotationMatrix(t)}setRotationFromQuaternion(t){this.quaternion.copy(t)}rotateOnAxis(t,e){return ir.setFromAxisAngle(t,e),this.quaternion.multiply(ir),this}rotateOnWorldAxis(t,e){return ir.setFromAxisAngle(t,e),this.quaternion.premultiply(ir),this}rotateX(t){return this.rotateOnAxis(Yu,t)}rotateY(t){return this.rotateOnAxis(qu,t)}rotateZ(t){return this.rotateOnAxis($u,t)}translateOnAxis(t,e){return Xu.copy(t).applyQuaternion(this.quaternion),this.position.add(Xu.multiplyScalar(e)),this}translateX(t){return this.translateOnAxis(Yu,t)}translateY(t){return this.translateOnAxis(qu,t)}translateZ(t){return this.translateOnAxis($u,t)}localToWorld(t){return this.updateWorldMatrix(!0,!1),t.applyMatrix4(this.matrixWorld)}worldToLocal(t){return this.updateWorldMatrix(!0,!1),t.applyMatrix4(Ci.copy(this.matrixWorld).invert())}lookAt(t,e,n){t.isVector3?Oo.copy(t):Oo.set(t,e,n);let s=this.parent;this.updateWorldMatrix(!0,!1),Kr.setFromMatrixPosition(this.matrixWorld),this.isCamera||this.isLight?Ci.lookAt(Kr,Oo,this.up):Ci.lookAt(Oo,Kr,this.up),this.quaternion.setFromRotationMatrix(Ci),s&&(Ci.extractRotation(s.matrixWorld),ir.setFromRotationMatrix(Ci),this.quaternion.premultiply(ir.invert()))}add(t){if(arguments.length>1){for(let e=0;e<arguments.length;e++)this.add(arguments[e]);return this}return t===this?(console.error("THREE.Object3D.add: object can't be added as a child of itself.",t),this):(t&&t.isObject3D?(t.removeFromParent(),t.parent=this,this.children.push(t),t.dispatchEvent(Zu),sr.child=t,this.dispatchEvent(sr),sr.child=null):console.error("THREE.Object3D.add: object not an instance of THREE.Object3D.",t),this)}remove(t){if(arguments.length>1){for(let n=0;n<arguments.length;n++)this.remove(arguments[n]);return this}let e=this.children.indexOf(t);return e!==-1&&(t.parent=null,this.children.splice(e,1),t.dispatchEvent(Tg),El.child=t,this.dispatchEvent(El),El.child=null),this}removeFromParent(){let t=this.parent;return t!==null&&t.remove(this),this}clear(){return this.remove(...this.children)}attach(t){return this.updateWorldMatrix(!0,!1),Ci.copy(this.matrixWorld).invert(),t.parent!==null&&(t.parent.updateWorldMatrix(!0,!1),Ci.multiply(t.parent.matrixWorld)),t.applyMatrix4(Ci),t.removeFromParent(),t.parent=this,this.children.push(t),t.updateWorldMatrix(!1,!0),t.dispatchEvent(Zu),sr.child=t,this.dispatchEvent(sr),sr.child=null,this}getObjectById(t){return this.getObjectByProperty("id",t)}getObjectByName(t){return this.getObjectByProperty("name",t)}getObjectByProperty(t,e){if(this[t]===e)return this;for(let n=0,s=this.children.length;n<s;n++){let o=this.children[n].getObjectByProperty(t,e);if(o!==void 0)return o}}getObjectsByProperty(t,e,n=[]){this[t]===e&&n.push(this);let s=this.children;for(let r=0,o=s.length;r<o;r++)s[r].getObjectsByProperty(t,e,n);return n}getWorldPosition(t){return this.updateWorldMatrix(!0,!1),t.setFromMatrixPosition(this.matrixWorld)}getWorldQuaternion(t){return this.updateWorldMatrix(!0,!1),this.matrixWorld.decompose(Kr,t,wg),t}getWorldScale(t){return this.updateWorldMatrix(!0,!1),this.matrixWorld.decompose(Kr,Eg,t),t}getWorldDirection(t){this.updateWorldMatrix(!0,!1);let e=this.matrixWorld.elements;return t.set(e[8],e[9],e[10]).normalize()}raycast(){}traverse(t){t(this);let e=this.children;for(let n=0,s=e.length;n<s;n++)e[n].traverse(t)}traverseVisible(t){if(this.visible===!1)return;t(this);let e=this.children;for(let n=0,s=e.length;n<s;n++)e[n].traverseVisible(t)}traverseAncestors(t){let e=this.parent;e!==null&&(t(e),e.traverseAncestors(t))}updateMatrix(){this.matrix.compose(this.position,this.quaternion,this.scale),this.matrixWorldNeedsUpdate=!0}updateMatrixWorld(t){this.matrixAutoUpdate&&this.updateMatrix(),(this.matrixWorldNeedsUpdate||t)&&(this.matrixWorldAutoUpdate===!0&&(this.parent===null?this.matrixWorld.copy(this.matrix):this.matrixWorld.multiplyMatrices(this.parent.matrixWorld,this.matrix)),this.matrixWorldNeedsUpdate=!1,t=!0);let e=this.children;for(let n=0,s=e.length;n<s;n++)e[n].updateMatrixWorld(t)}updateWorldMatrix(t,e){let n=this.parent;if(t===!0&&n!==null&&n.updateWorldMatrix(!0,!1),this.matrixAutoUpdate&&this.updateMatrix(),this.matrixWorldAutoUpdate===!0&&(this.parent===null?this.matrixWorld.copy(this.matrix):this.matrixWorld.multiplyMatrices(this.parent.matrixWorld,this.matrix)),e===!0){let s=this.children;for(let r=0,o=s.length;r<o;r++)s[r].updateWorldMatrix(!1,!0)}}toJSON(t){let e=t===void 0||typeof t=="string",n={};e&&(t={geometries:{},materials:{},textures:{},images:{},shapes:{},skeletons:{},animations:{},nodes:{}},n.metadata={version:4.6,type:"Object",generator:"Object3D.toJSON"});let s={};s.uuid=this.uuid,s.type=this.type,this.name!==""&&(s.name=this.name),this.castShadow===!0&&(s.castShadow=!0),this.receiveShadow===!0&&(s.receiveShadow=!0),this.visible===!1&&(s.visible=!1),this.frustumCulled===!1&&(s.frustumCulled=!1),this.renderOrder!==0&&(s.renderOrder=this.renderOrder),Object.keys(this.userData).length>0&&(s.userData=this.userData),s.layers=this.layers.mask,s.matrix=this.matrix.toArray(),s.up=this.up.toArray(),this.matrixAutoUpdate===!1&&(s.matrixAutoUpdate=!1),this.isInstancedMesh&&(s.type="InstancedMesh",s.count=this.count,s.instanceMatrix=this.instanceMatrix.toJSON(),this.instanceColor!==null&&(s.instanceColor=this.instanceColor.toJSON())),this.isBatchedMesh&&(s.type="BatchedMesh",s.perObjectFrustumCulled=this.perObjectFrustumCulled,s.sortObjects=this.sortObjects,s.drawRanges=this._drawRanges,s.reservedRanges=this._reservedRanges,s.visibility=this._visibility,s.active=this._active,s.bounds=this._bounds.map(a=>({boxInitialized:a.boxInitialized,boxMin:a.box.min.toArray(),boxMax:a.box.max.toArray(),sphereInitialized:a.sphereInitialized,sphereRadius:a.sphere.radius,sphereCenter:a.sphere.center.toArray()})),s.maxInstanceCount=this._maxInstanceCount,s.maxVertexCount=this._maxVertexCount,s.maxIndexCount=this._maxIndexCount,s.geometryInitialized=this._geometryInitialized,s.geometryCount=this._geometryCount,s.matricesTexture=this._matricesTexture.toJSON(t),this._colorsTexture!==null&&(s.colorsTexture=this._colorsTexture.toJSON(t)),this.boundingSphere!==null&&(s.boundingSphere={center:s.boundingSphere.center.toArray(),radius:s.boundingSphere.radius}),this.boundingBox!==null&&(s.boundingBox={min:s.boundingBox.min.toArray(),max:s.boundingBox.max.toArray()}));function r(a,l){return a[l.uuid]===void 0&&(a[l.uuid]=l.toJSON(t)),l.uuid}if(this.isScene)this.background&&(this.background.isColor?s.background=this.background.toJSON():this.background.isTexture&&(s.background=this.background.toJSON(t).uuid)),this.environment&&this.environment.isTexture&&this.environment.isRenderTargetTexture!==!0&&(s.environment=this.environment.toJSON(t).uuid);else if(this.isMesh||this.isLine||this.isPoints){s.geometry=r(t.geometries,this.geometry);let a=this.geometry.parameters;if(a!==void 0&&a.shapes!==void 0){let l=a.shapes;if(Array.isArray(l))for(let c=0,u=l.length;c<u;c++){let f=l[c];r(t.shapes,f)}else r(t.shapes,l)}}if(this.isSkinnedMesh&&(s.bindMode=this.bindMode,s.bindMatrix=this.bindMatrix.toArray(),this.skeleton!==void 0&&(r(t.skeletons,this.skeleton),s.skeleton=this.skeleton.uuid)),this.material!==void 0)if(Array.isArray(this.material)){let a=[];for(let l=0,c=this.material.length;l<c;l++)a.push(r(t.materials,this.material[l]));s.material=a}else s.material=r(t.materials,this.material);if(this.children.length>0){s.children=[];for(let a=0;a<this.children.length;a++)s.children.push(this.children[a].toJSON(t).object)}if(this.animations.length>0){s.animations=[];for(let a=0;a<this.animations.length;a++){let l=this.animations[a];s.animations.push(r(t.animations,l))}}if(e){let a=o(t.geometries),l=o(t.materials),c=o(t.textures),u=o(t.images),f=o(t.shapes),h=o(t.skeletons),p=o(t.animations),_=o(t.nodes);a.length>0&&(n.geometries=a),l.length>0&&(n.materials=l),c.length>0&&(n.textures=c),u.length>0&&(n.images=u),f.length>0&&(n.shapes=f),h.length>0&&(n.skeletons=h),p.length>0&&(n.animations=p),_.length>0&&(n.nodes=_)}return n.object=s,n;function o(a){let l=[];for(let c in a){let u=a[c];delete u.metadata,l.push(u)}return l}}clone(t){return new this.constructor().copy(this,t)}copy(t,e=!0){if(this.name=t.name,this.up.copy(t.up),this.position.copy(t.position),this.rotation.order=t.rotation.order,this.quaternion.copy(t.quaternion),this.scale.copy(t.scale),this.matrix.copy(t.matrix),this.matrixWorld.copy(t.matrixWorld),this.matrixAutoUpdate=t.matrixAutoUpdate,this.matrixWorldAutoUpdate=t.matrixWorldAutoUpdate,this.matrixWorldNeedsUpdate=t.matrixWorldNeedsUpdate,this.layers.mask=t.layers.mask,this.visible=t.visible,this.castShadow=t.castShadow,this.receiveShadow=t.receiveShadow,this.frustumCulled=t.frustumCulled,this.renderOrder=t.renderOrder,this.animations=t.animations.slice(),this.userData=JSON.parse(JSON.stringify(t.userData)),e===!0)for(let n=0;n<t.children.length;n++){let s=t.children[n];this.add(s.clone())}return this}};Yn.DEFAULT_UP=new H(0,1,0);Yn.DEFAULT_MATRIX_AUTO_UPDATE=!0;Yn.DEFAULT_MATRIX_WORLD_AUTO_UPDATE=!0;var ei=new H,Ri=new H,Tl=new H,Pi=new H,rr=new H,or=new H,Ju=new H,Al=new H,Cl=new H,Rl=new H,Pl=new Fe,Il=new Fe,Ll=new Fe,Ms=class i{constructor(t=new H,e=new H,n=new H){this.a=t,this.b=e,this.c=n}static getNormal(t,e,n,s){s.subVectors(n,e),ei.subVectors(t,e),s.cross(ei);let r=s.lengthSq();return r>0?s.multiplyScalar(1/Math.sqrt(r)):s.set(0,0,0)}static getBarycoord(t,e,n,s,r){ei.subVectors(s,e),Ri.subVectors(n,e),Tl.subVectors(t,e);let o=ei.dot(ei),a=ei.dot(Ri),l=ei.dot(Tl),c=Ri.dot(Ri),u=Ri.dot(Tl),f=o*c-a*a;if(f===0)return r.set(0,0,0),null;let h=1/f,p=(c*l-a*u)*h,_=(o*u-a*l)*h;return r.set(1-p-_,_,p)}static containsPoint(t,e,n,s){return this.getBarycoord(t,e,n,s,Pi)===null?!1:Pi.x>=0&&Pi.y>=0&&Pi.x+Pi.y<=1}static getInterpolation(t,e,n,s,r,o,a,l){return this.getBarycoord(t,e,n,s,Pi)===null?(l.x=0,l.y=0,"z"in l&&(l.z=0),"w"in l&&(l.w=0),null):(l.setScalar(0),l.addScaledVector(r,Pi.x),l.addScaledVector(o,Pi.y),l.addScaledVector(a,Pi.z),l)}static getInterpolatedAttribute(t,e,n,s,r,o){return Pl.setScalar(0),Il.setScalar(0),Ll.setScalar(0),Pl.fromBufferAttribute(t,e),Il.fromBufferAttribute(t,n),Ll.fromBufferAttribute(t,s),o.setScalar(0),o.addScaledVector(Pl,r.x),o.addScaledVector(Il,r.y),o.addScaledVector(Ll,r.z),o}static isFrontFacing(t,e,n,s){return ei.subVectors(n,e),Ri.subVectors(t,e),ei.cross(Ri).dot(s)<0}set(t,e,n){return this.a.copy(t),this.b.copy(e),this.c.copy(n),this}setFromPointsAndIndices(t,e,n,s){return this.a.copy(t[e]),this.b.copy(t[n]),this.c.copy(t[s]),this}setFromAttributeAndIndices(t,e,n,s){return this.a.fromBufferAttribute(t,e),this.b.fromBufferAttribute(t,n),this.c.fromBufferAttribute(t,s),this}clone(){return new this.constructor().copy(this)}copy(t){return this.a.copy(t.a),this.b.copy(t.b),this.c.copy(t.c),this}getArea(){return ei.subVectors(this.c,this.b),Ri.subVectors(this.a,this.b),ei.cross(Ri).length()*.5}getMidpoint(t){return t.addVectors(this.a,this.b).add(this.c).multiplyScalar(1/3)}getNormal(t){return i.getNormal(this.a,this.b,this.c,t)}getPlane(t){return t.setFromCoplanarPoints(this.a,this.b,this.c)}getBarycoord(t,e){return i.getBarycoord(t,this.a,this.b,this.c,e)}getInterpolation(t,e,n,s,r){return i.getInterpolation(t,this.a,this.b,this.c,e,n,s,r)}containsPoint(t){return i.containsPoint(t,this.a,this.b,this.c)}isFrontFacing(t){return i.isFrontFacing(this.a,this.b,this.c,t)}intersectsBox(t){return t.intersectsTriangle(this)}closestPointToPoint(t,e){let n=this.a,s=this.b,r=this.c,o,a;rr.subVectors(s,n),or.subVectors(r,n),Al.subVectors(t,n);let l=rr.dot(Al),c=or.dot(Al);if(l<=0&&c<=0)return e.copy(n);Cl.subVectors(t,s);let u=rr.dot(Cl),f=or.dot(Cl);if(u>=0&&f<=u)return e.copy(s);let h=l*f-u*c;if(h<=0&&l>=0&&u<=0)return o=l/(l-u),e.copy(n).addScaledVector(rr,o);Rl.subVectors(t,r);let p=rr.dot(Rl),_=or.dot(Rl);if(_>=0&&p<=_)return e.copy(r);let x=p*c-l*_;if(x<=0&&c>=0&&_<=0)return a=c/(c-_),e.copy(n).addScaledVector(or,a);let m=u*_-p*f;if(m<=0&&f-u>=0&&p-_>=0)return Ju.subVectors(r,s),a=(f-u)/(f-u+(p-_)),e.copy(s).addScaledVector(Ju,a);let d=1/(m+x+h);return o=x*d,a=h*d,e.copy(n).addScaledVector(rr,o).addScaledVector(or,a)}equals(t){return t.a.equals(this.a)&&t.b.equals(this.b)&&t.c.equals(this.c)}},qf={aliceblue:15792383,antiquewhite:16444375,aqua:65535,aquamarine:8388564,azure:15794175,beige:16119260,bisque:16770244,black:0,blanchedalmond:16772045,blue:255,blueviolet:9055202,brown:10824234,burlywood:14596231,cadetblue:6266528,chartreuse:8388352,chocolate:13789470,coral:16744272,cornflowerblue:6591981,cornsilk:16775388,crimson:14423100,cyan:65535,darkblue:139,darkcyan:35723,darkgoldenrod:12092939,darkgray:11119017,darkgreen:25600,darkgrey:11119017,darkkhaki:12433259,darkmagenta:9109643,darkolivegreen:5597999,darkorange:16747520,darkorchid:10040012,darkred:9109504,darksalmon:15308410,darkseagreen:9419919,darkslateblue:4734347,darkslategray:3100495,darkslategrey:3100495,darkturquoise:52945,darkviolet:9699539,deeppink:16716947,deepskyblue:49151,dimgray:6908265,dimgrey:6908265,dodgerblue:2003199,firebrick:11674146,floralwhite:16775920,forestgreen:2263842,fuchsia:16711935,gainsboro:14474460,ghostwhite:16316671,gold:16766720,goldenrod:14329120,gray:8421504,green:32768,greenyellow:11403055,grey:8421504,honeydew:15794160,hotpink:16738740,indianred:13458524,indigo:4915330,ivory:16777200,khaki:15787660,lavender:15132410,lavenderblush:16773365,lawngreen:8190976,lemonchiffon:16775885,lightblue:11393254,lightcoral:15761536,lightcyan:14745599,lightgoldenrodyellow:16448210,lightgray:13882323,lightgreen:9498256,lightgrey:13882323,lightpink:16758465,lightsalmon:16752762,lightseagreen:2142890,lightskyblue:8900346,lightslategray:7833753,lightslategrey:7833753,lightsteelblue:11584734,lightyellow:16777184,lime:65280,limegreen:3329330,linen:16445670,magenta:16711935,maroon:8388608,mediumaquamarine:6737322,mediumblue:205,mediumorchid:12211667,mediumpurple:9662683,mediumseagreen:3978097,mediumslateblue:8087790,mediumspringgreen:64154,mediumturquoise:4772300,mediumvioletred:13047173,midnightblue:1644912,mintcream:16121850,mistyrose:16770273,moccasin:16770229,navajowhite:16768685,navy:128,oldlace:16643558,olive:8421376,olivedrab:7048739,orange:16753920,orangered:16729344,orchid:14315734,palegoldenrod:15657130,palegreen:10025880,paleturquoise:11529966,palevioletred:14381203,papayawhip:16773077,peachpuff:16767673,peru:13468991,pink:16761035,plum:14524637,powderblue:11591910,purple:8388736,rebeccapurple:6697881,red:16711680,rosybrown:12357519,royalblue:4286945,saddlebrown:9127187,salmon:16416882,sandybrown:16032864,seagreen:3050327,seashell:16774638,sienna:10506797,silver:12632256,skyblue:8900331,slateblue:6970061,slategray:7372944,slategrey:7372944,snow:16775930,springgreen:65407,steelblue:4620980,tan:13808780,teal:32896,thistle:14204888,tomato:16737095,turquoise:4251856,violet:15631086,wheat:16113331,white:16777215,whitesmoke:16119285,yellow:16776960,yellowgreen:10145074},ji={h:0,s:0,l:0},Fo={h:0,s:0,l:0};function Dl(i,t,e){return e<0&&(e+=1),e>1&&(e-=1),e<1/6?i+(t-i)*6*e:e<1/2?t:e<2/3?i+(t-i)*6*(2/3-e):i}var ge=class{constructor(t,e,n){return this.isColor=!0,this.r=1,this.g=1,this.b=1,this.set(t,e,n)}set(t,e,n){if(e===void 0&&n===void 0){let s=t;s&&s.isColor?this.copy(s):typeof s=="number"?this.setHex(s):typeof s=="string"&&this.setStyle(s)}else this.setRGB(t,e,n);return this}setScalar(t){return this.r=t,this.g=t,this.b=t,this}setHex(t,e=Wn){return t=Math.floor(t),this.r=(t>>16&255)/255,this.g=(t>>8&255)/255,this.b=(t&255)/255,de.toWorkingColorSpace(this,e),this}setRGB(t,e,n,s=de.workingColorSpace){return this.r=t,this.g=e,this.b=n,de.toWorkingColorSpace(this,s),this}setHSL(t,e,n,s=de.workingColorSpace){if(t=uh(t,1),e=fn(e,0,1),n=fn(n,0,1),e===0)this.r=this.g=this.b=n;else{let r=n<=.5?n*(1+e):n+e-n*e,o=2*n-r;this.r=Dl(o,r,t+1/3),this.g=Dl(o,r,t),this.b=Dl(o,r,t-1/3)}return de.toWorkingColorSpace(this,s),this}setStyle(t,e=Wn){function n(r){r!==void 0&&parseFloat(r)<1&&console.warn("THREE.Color: Alpha component of "+t+" will be ignored.")}let s;if(s=/^(\w+)\(([^\)]*)\)/.exec(t)){let r,o=s[1],a=s[2];switch(o){case"rgb":case"rgba":if(r=/^\s*(\d+)\s*,\s*(\d+)\s*,\s*(\d+)\s*(?:,\s*(\d*\.?\d+)\s*)?$/.exec(a))return n(r[4]),this.setRGB(Math.min(255,parseInt(r[1],10))/255,Math.min(255,parseInt(r[2],10))/255,Math.min(255,parseInt(r[3],10))/255,e);if(r=/^\s*(\d+)\%\s*,\s*(\d+)\%\s*,\s*(\d+)\%\s*(?:,\s*(\d*\.?\d+)\s*)?$/.exec(a))return n(r[4]),this.setRGB(Math.min(100,parseInt(r[1],10))/100,Math.min(100,parseInt(r[2],10))/100,Math.min(100,parseInt(r[3],10))/100,e);break;case"hsl":case"hsla":if(r=/^\s*(\d*\.?\d+)\s*,\s*(\d*\.?\d+)\%\s*,\s*(\d*\.?\d+)\%\s*(?:,\s*(\d*\.?\d+)\s*)?$/.exec(a))return n(r[4]),this.setHSL(parseFloat(r[1])/360,parseFloat(r[2])/100,parseFloat(r[3])/100,e);break;default:console.warn("THREE.Color: Unknown color model "+t)}}else if(s=/^\#([A-Fa-f\d]+)$/.exec(t)){let r=s[1],o=r.length;if(o===3)return this.setRGB(parseInt(r.charAt(0),16)/15,parseInt(r.charAt(1),16)/15,parseInt(r.charAt(2),16)/15,e);if(o===6)return this.setHex(parseInt(r,16),e);console.warn("THREE.Color: Invalid hex color "+t)}else if(t&&t.length>0)return this.setColorName(t,e);return this}setColorName(t,e=Wn){let n=qf[t.toLowerCase()];return n!==void 0?this.setHex(n,e):console.warn("THREE.Color: Unknown color "+t),this}clone(){return new this.constructor(this.r,this.g,this.b)}copy(t){return this.r=t.r,this.g=t.g,this.b=t.b,this}copySRGBToLinear(t){return this.r=Ui(t.r),this.g=Ui(t.g),this.b=Ui(t.b),this}copyLinearToSRGB(t){return this.r=gr(t.r),this.g=gr(t.g),this.b=gr(t.b),this}convertSRGBToLinear(){return this.copySRGBToLinear(this),this}convertLinearToSRGB(){return this.copyLinearToSRGB(this),this}getHex(t=Wn){return de.fromWorkingColorSpace(un.copy(this),t),Math.round(fn(un.r*255,0,255))*65536+Math.round(fn(un.g*255,0,255))*256+Math.round(fn(un.b*255,0,255))}getHexString(t=Wn){return("000000"+this.getHex(t).toString(16)).slice(-6)}getHSL(t,e=de.workingColorSpace){de.fromWorkingColorSpace(un.copy(this),e);let n=un.r,s=un.g,r=un.b,o=Math.max(n,s,r),a=Math.min(n,s,r),l,c,u=(a+o)/2;if(a===o)l=0,c=0;else{let f=o-a;switch(c=u<=.5?f/(o+a):f/(2-o-a),o){case n:l=(s-r)/f+(s<r?6:0);break;case s:l=(r-n)/f+2;break;case r:l=(n-s)/f+4;break}l/=6}return t.h=l,t.s=c,t.l=u,t}getRGB(t,e=de.workingColorSpace){return de.fromWorkingColorSpace(un.copy(this),e),t.r=un.r,t.g=un.g,t.b=un.b,t}getStyle(t=Wn){de.fromWorkingColorSpace(un.copy(this),t);let e=un.r,n=un.g,s=un.b;return t!==Wn?`color(${t} ${e.toFixed(3)} ${n.toFixed(3)} ${s.toFixed(3)})`:`rgb(${Math.round(e*255)},${Math.round(n*255)},${Math.round(s*255)})`}offsetHSL(t,e,n){return this.getHSL(ji),this.setHSL(ji.h+t,ji.s+e,ji.l+n)}add(t){return this.r+=t.r,this.g+=t.g,this.b+=t.b,this}addColors(t,e){return this.r=t.r+e.r,this.g=t.g+e.g,this.b=t.b+e.b,this}addScalar(t){return this.r+=t,this.g+=t,this.b+=t,this}sub(t){return this.r=Math.max(0,this.r-t.r),this.g=Math.max(0,this.g-t.g),this.b=Math.max(0,this.b-t.b),this}multiply(t){return this.r*=t.r,this.g*=t.g,this.b*=t.b,this}multiplyScalar(t){return this.r*=t,this.g*=t,this.b*=t,this}lerp(t,e){return this.r+=(t.r-this.r)*e,this.g+=(t.g-this.g)*e,this.b+=(t.b-this.b)*e,this}lerpColors(t,e,n){return this.r=t.r+(e.r-t.r)*n,this.g=t.g+(e.g-t.g)*n,this.b=t.b+(e.b-t.b)*n,this}lerpHSL(t,e){this.getHSL(ji),t.getHSL(Fo);let n=io(ji.h,Fo.h,e),s=io(ji.s,Fo.s,e),r=io(ji.l,Fo.l,e);return this.setHSL(n,s,r),this}setFromVector3(t){return this.r=t.x,this.g=t.y,this.b=t.z,this}applyMatrix3(t){let e=this.r,n=this.g,s=this.b,r=t.elements;return this.r=r[0]*e+r[3]*n+r[6]*s,this.g=r[1]*e+r[4]*n+r[7]*s,this.b=r[2]*e+r[5]*n+r[8]*s,this}equals(t){return t.r===this.r&&t.g===this.g&&t.b===this.b}fromArray(t,e=0){return this.r=t[e],this.g=t[e+1],this.b=t[e+2],this}toArray(t=[],e=0){return t[e]=this.r,t[e+1]=this.g,t[e+2]=this.b,t}fromBufferAttribute(t,e){return this.r=t.getX(e),this.g=t.getY(e),this.b=t.getZ(e),this}toJSON(){return this.getHex()}*[Symbol.iterator](){yield this.r,yield this.g,yield this.b}},un=new ge;ge.NAMES=qf;var Ag=0,As=class extends Oi{static get type(){return"Material"}get type(){return this.constructor.type}set type(t){}constructor(){super(),this.isMaterial=!0,Object.defineProperty(this,"id",{value:Ag++}),this.uuid=Ar(),this.name="",this.blending=pr,this.side=is,this.vertexColors=!1,this.opacity=1,this.transparent=!1,this.alphaHash=!1,this.blendSrc=Wl,this.blendDst=Xl,this.blendEquation=vs,this.blendSrcAlpha=null,this.blendDstAlpha=null,this.blendEquationAlpha=null,this.blendColor=new ge(0,0,0),this.blendAlpha=0,this.depthFunc=xr,this.depthTest=!0,this.depthWrite=!0,this.stencilWriteMask=255,this.stencilFunc=Lu,this.stencilRef=0,this.stencilFuncMask=255,this.stencilFail=Ks,this.stencilZFail=Ks,this.stencilZPass=Ks,this.stencilWrite=!1,this.clippingPlanes=null,this.clipIntersection=!1,this.clipShadows=!1,this.shadowSide=null,this.colorWrite=!0,this.precision=null,this.polygonOffset=!1,this.polygonOffsetFactor=0,this.polygonOffsetUnits=0,this.dithering=!1,this.alphaToCoverage=!1,this.premultipliedAlpha=!1,this.forceSinglePass=!1,this.visible=!0,this.toneMapped=!0,this.userData={},this.version=0,this._alphaTest=0}get alphaTest(){return this._alphaTest}set alphaTest(t){this._alphaTest>0!=t>0&&this.version++,this._alphaTest=t}onBeforeRender(){}onBeforeCompile(){}customProgramCacheKey(){return this.onBeforeCompile.toString()}setValues(t){if(t!==void 0)for(let e in t){let n=t[e];if(n===void 0){console.warn(`THREE.Material: parameter '${e}' has value of undefined.`);continue}let s=this[e];if(s===void 0){console.warn(`THREE.Material: '${e}' is not a property of THREE.${this.type}.`);continue}s&&s.isColor?s.set(n):s&&s.isVector3&&n&&n.isVector3?s.copy(n):this[e]=n}}toJSON(t){let e=t===void 0||typeof t=="string";e&&(t={textures:{},images:{}});let n={metadata:{version:4.6,type:"Material",generator:"Material.toJSON"}};n.uuid=this.uuid,n.type=this.type,this.name!==""&&(n.name=this.name),this.color&&this.color.isColor&&(n.color=this.color.getHex()),this.roughness!==void 0&&(n.roughness=this.roughness),this.metalness!==void 0&&(n.metalness=this.metalness),this.sheen!==void 0&&(n.sheen=this.sheen),this.sheenColor&&this.sheenColor.isColor&&(n.sheenColor=this.sheenColor.getHex()),this.sheenRoughness!==void 0&&(n.sheenRoughness=this.sheenRoughness),this.emissive&&this.emissive.isColor&&(n.emissive=this.emissive.getHex()),this.emissiveIntensity!==void 0&&this.emissiveIntensity!==1&&(n.emissiveIntensity=this.emissiveIntensity),this.specular&&this.specular.isColor&&(n.specular=this.specular.getHex()),this.specularIntensity!==void 0&&(n.specularIntensity=this.specularIntensity),this.specularColor&&this.specularColor.isColor&&(n.specularColor=this.specularColor.getHex()),this.shininess!==void 0&&(n.shininess=this.shininess),this.clearcoat!==void 0&&(n.clearcoat=this.clearcoat),this.clearcoatRoughness!==void 0&&(n.clearcoatRoughness=this.clearcoatRoughness),this.clearcoatMap&&this.clearcoatMap.isTexture&&(n.clearcoatMap=this.clearcoatMap.toJSON(t).uuid),this.clearcoatRoughnessMap&&this.clearcoatRoughnessMap.isTexture&&(n.clearcoatRoughnessMap=this.clearcoatRoughnessMap.toJSON(t).uuid),this.clearcoatNormalMap&&this.clearcoatNormalMap.isTexture&&(n.clearcoatNormalMap=this.clearcoatNormalMap.toJSON(t).uuid,n.clearcoatNormalScale=this.clearcoatNormalScale.toArray()),this.dispersion!==void 0&&(n.dispersion=this.dispersion),this.iridescence!==void 0&&(n.iridescence=this.iridescence),this.iridescenceIOR!==void 0&&(n.iridescenceIOR=this.iridescenceIOR),this.iridescenceThicknessRange!==void 0&&(n.iridescenceThicknessRange=this.iridescenceThicknessRange),this.iridescenceMap&&this.iridescenceMap.isTexture&&(n.iridescenceMap=this.iridescenceMap.toJSON(t).uuid),this.iridescenceThicknessMap&&this.iridescenceThicknessMap.isTexture&&(n.iridescenceThicknessMap=this.iridescenceThicknessMap.toJSON(t).uuid),this.anisotropy!==void 0&&(n.anisotropy=this.anisotropy),this.anisotropyRotation!==void 0&&(n.anisotropyRotation=this.anisotropyRotation),this.anisotropyMap&&this.anisotropyMap.isTexture&&(n.anisotropyMap=this.anisotropyMap.toJSON(t).uuid),this.map&&this.map.isTexture&&(n.map=this.map.toJSON(t).uuid),this.matcap&&this.matcap.isTexture&&(n.matcap=this.matcap.toJSON(t).uuid),this.alphaMap&&this.alphaMap.isTexture&&(n.alphaMap=this.alphaMap.toJSON(t).uuid),this.lightMap&&this.lightMap.isTexture&&(n.lightMap=this.lightMap.toJSON(t).uuid,n.lightMapIntensity=this.lightMapIntensity),this.aoMap&&this.aoMap.isTexture&&(n.aoMap=this.aoMap.toJSON(t).uuid,n.aoMapIntensity=this.aoMapIntensity),this.bumpMap&&this.bumpMap.isTexture&&(n.bumpMap=this.bumpMap.toJSON(t).uuid,n.bumpScale=this.bumpScale),this.normalMap&&this.normalMap.isTexture&&(n.normalMap=this.normalMap.toJSON(t).uuid,n.normalMapType=this.normalMapType,n.normalScale=this.normalScale.toArray()),this.displacementMap&&this.displacementMap.isTexture&&(n.displacementMap=this.displacementMap.toJSON(t).uuid,n.displacementScale=this.displacementScale,n.displacementBias=this.displacementBias),this.roughnessMap&&this.roughnessMap.isTexture&&(n.roughnessMap=this.roughnessMap.toJSON(t).uuid),this.metalnessMap&&this.metalnessMap.isTexture&&(n.metalnessMap=this.metalnessMap.toJSON(t).uuid),this.emissiveMap&&this.emissiveMap.isTexture&&(n.emissiveMap=this.emissiveMap.toJSON(t).uuid),this.specularMap&&this.specularMap.isTexture&&(n.specularMap=this.specularMap.toJSON(t).uuid),this.specularIntensityMap&&this.specularIntensityMap.isTexture&&(n.specularIntensityMap=this.specularIntensityMap.toJSON(t).uuid),this.specularColorMap&&this.specularColorMap.isTexture&&(n.specularColorMap=this.specularColorMap.toJSON(t).uuid),this.envMap&&this.envMap.isTexture&&(n.envMap=this.envMap.toJSON(t).uuid,this.combine!==void 0&&(n.combine=this.combine)),this.envMapRotation!==void 0&&(n.envMapRotation=this.envMapRotation.toArray()),this.envMapIntensity!==void 0&&(n.envMapIntensity=this.envMapIntensity),this.reflectivity!==void 0&&(n.reflectivity=this.reflectivity),this.refractionRatio!==void 0&&(n.refractionRatio=this.refractionRatio),this.gradientMap&&this.gradientMap.isTexture&&(n.gradientMap=this.gradientMap.toJSON(t).uuid),this.transmission!==void 0&&(n.transmission=this.transmission),this.transmissionMap&&this.transmissionMap.isTexture&&(n.transmissionMap=this.transmissionMap.toJSON(t).uuid),this.thickness!==void 0&&(n.thickness=this.thickness),this.thicknessMap&&this.thicknessMap.isTexture&&(n.thicknessMap=this.thicknessMap.toJSON(t).uuid),this.attenuationDistance!==void 0&&this.attenuationDistance!==1/0&&(n.attenuationDistance=this.attenuationDistance),this.attenuationColor!==void 0&&(n.attenuationColor=this.attenuationColor.getHex()),this.size!==void 0&&(n.size=this.size),this.shadowSide!==null&&(n.shadowSide=this.shadowSide),this.sizeAttenuation!==void 0&&(n.sizeAttenuation=this.sizeAttenuation),this.blending!==pr&&(n.blending=this.blending),this.side!==is&&(n.side=this.side),this.vertexColors===!0&&(n.vertexColors=!0),this.opacity<1&&(n.opacity=this.opacity),this.transparent===!0&&(n.transparent=!0),this.blendSrc!==Wl&&(n.blendSrc=this.blendSrc),this.blendDst!==Xl&&(n.blendDst=this.blendDst),this.blendEquation!==vs&&(n.blendEquation=this.blendEquation),this.blendSrcAlpha!==null&&(n.blendSrcAlpha=this.blendSrcAlpha),this.blendDstAlpha!==null&&(n.blendDstAlpha=this.blendDstAlpha),this.blendEquationAlpha!==null&&(n.blendEquationAlpha=this.blendEquationAlpha),this.blendColor&&this.blendColor.isColor&&(n.blendColor=this.blendColor.getHex()),this.blendAlpha!==0&&(n.blendAlpha=this.blendAlpha),this.depthFunc!==xr&&(n.depthFunc=this.depthFunc),this.depthTest===!1&&(n.depthTest=this.depthTest),this.depthWrite===!1&&(n.depthWrite=this.depthWrite),this.colorWrite===!1&&(n.colorWrite=this.colorWrite),this.stencilWriteMask!==255&&(n.stencilWriteMask=this.stencilWriteMask),this.stencilFunc!==Lu&&(n.stencilFunc=this.stencilFunc),this.stencilRef!==0&&(n.stencilRef=this.stencilRef),this.stencilFuncMask!==255&&(n.stencilFuncMask=this.stencilFuncMask),this.stencilFail!==Ks&&(n.stencilFail=this.stencilFail),this.stencilZFail!==Ks&&(n.stencilZFail=this.stencilZFail),this.stencilZPass!==Ks&&(n.stencilZPass=this.stencilZPass),this.stencilWrite===!0&&(n.stencilWrite=this.stencilWrite),this.rotation!==void 0&&this.rotation!==0&&(n.rotation=this.rotation),this.polygonOffset===!0&&(n.polygonOffset=!0),this.polygonOffsetFactor!==0&&(n.polygonOffsetFactor=this.polygonOffsetFactor),this.polygonOffsetUnits!==0&&(n.polygonOffsetUnits=this.polygonOffsetUnits),this.linewidth!==void 0&&this.linewidth!==1&&(n.linewidth=this.linewidth),this.dashSize!==void 0&&(n.dashSize=this.dashSize),this.gapSize!==void 0&&(n.gapSize=this.gapSize),this.scale!==void 0&&(n.scale=this.scale),this.dithering===!0&&(n.dithering=!0),this.alphaTest>0&&(n.alphaTest=this.alphaTest),this.alphaHash===!0&&(n.alphaHash=!0),this.alphaToCoverage===!0&&(n.alphaToCoverage=!0),this.premultipliedAlpha===!0&&(n.premultipliedAlpha=!0),this.forceSinglePass===!0&&(n.forceSinglePass=!0),this.wireframe===!0&&(n.wireframe=!0),this.wireframeLinewidth>1&&(n.wireframeLinewidth=this.wireframeLinewidth),this.wireframeLinecap!=="round"&&(n.wireframeLinecap=this.wireframeLinecap),this.wireframeLinejoin!=="round"&&(n.wireframeLinejoin=this.wireframeLinejoin),this.flatShading===!0&&(n.flatShading=!0),this.visible===!1&&(n.visible=!1),this.toneMapped===!1&&(n.toneMapped=!1),this.fog===!1&&(n.fog=!1),Object.keys(this.userData).length>0&&(n.userData=this.userData);function s(r){let o=[];for(let a in r){let l=r[a];delete l.metadata,o.push(l)}return o}if(e){let r=s(t.textures),o=s(t.images);r.length>0&&(n.textures=r),o.length>0&&(n.images=o)}return n}clone(){return new this.constructor().copy(this)}copy(t){this.name=t.name,this.blending=t.blending,this.side=t.side,this.vertexColors=t.vertexColors,this.opacity=t.opacity,this.transparent=t.transparent,this.blendSrc=t.blendSrc,this.blendDst=t.blendDst,this.blendEquation=t.blendEquation,this.blendSrcAlpha=t.blendSrcAlpha,this.blendDstAlpha=t.blendDstAlpha,this.blendEquationAlpha=t.blendEquationAlpha,this.blendColor.copy(t.blendColor),this.blendAlpha=t.blendAlpha,this.depthFunc=t.depthFunc,this.depthTest=t.depthTest,this.depthWrite=t.depthWrite,this.stencilWriteMask=t.stencilWriteMask,this.stencilFunc=t.stencilFunc,this.stencilRef=t.stencilRef,this.stencilFuncMask=t.stencilFuncMask,this.stencilFail=t.stencilFail,this.stencilZFail=t.stencilZFail,this.stencilZPass=t.stencilZPass,this.stencilWrite=t.stencilWrite;let e=t.clippingPlanes,n=null;if(e!==null){let s=e.length;n=new Array(s);for(let r=0;r!==s;++r)n[r]=e[r].clone()}return this.clippingPlanes=n,this.clipIntersection=t.clipIntersection,this.clipShadows=t.clipShadows,this.shadowSide=t.shadowSide,this.colorWrite=t.colorWrite,this.precision=t.precision,this.polygonOffset=t.polygonOffset,this.polygonOffsetFactor=t.polygonOffsetFactor,this.polygonOffsetUnits=t.polygonOffsetUnits,this.dithering=t.dithering,this.alphaTest=t.alphaTest,this.alphaHash=t.alphaHash,this.alphaToCoverage=t.alphaToCoverage,this.premultipliedAlpha=t.premultipliedAlpha,this.forceSinglePass=t.forceSinglePass,this.visible=t.visible,this.toneMapped=t.toneMapped,this.userData=JSON.parse(JSON.stringify(t.userData)),this}dispose(){this.dispatchEvent({type:"dispose"})}set needsUpdate(t){t===!0&&this.version++}onBuild(){console.warn("Material: onBuild() has been removed.")}},ha=class extends As{static get type(){return"MeshBasicMaterial"}constructor(t){super(),this.isMeshBasicMaterial=!0,this.color=new ge(16777215),this.map=null,this.lightMap=null,this.lightMapIntensity=1,this.aoMap=null,this.aoMapIntensity=1,this.specularMap=null,this.alphaMap=null,this.envMap=null,this.envMapRotation=new Bi,this.combine=Lf,this.reflectivity=1,this.refractionRatio=.98,this.wireframe=!1,this.wireframeLinewidth=1,this.wireframeLinecap="round",this.wireframeLinejoin="round",this.fog=!0,this.setValues(t)}copy(t){return super.copy(t),this.color.copy(t.color),this.map=t.map,this.lightMap=t.lightMap,this.lightMapIntensity=t.lightMapIntensity,this.aoMap=t.aoMap,this.aoMapIntensity=t.aoMapIntensity,this.specularMap=t.specularMap,this.alphaMap=t.alphaMap,this.envMap=t.envMap,this.envMapRotation.copy(t.envMapRotation),this.combine=t.combine,this.reflectivity=t.reflectivity,this.refractionRatio=t.refractionRatio,this.wireframe=t.wireframe,this.wireframeLinewidth=t.wireframeLinewidth,this.wireframeLinecap=t.wireframeLinecap,this.wireframeLinejoin=t.wireframeLinejoin,this.fog=t.fog,this}};var Ge=new H,Bo=new ie,an=class{constructor(t,e,n=!1){if(Array.isArray(t))throw new TypeError("THREE.BufferAttribute: array should be a Typed Array.");this.isBufferAttribute=!0,this.name="",this.array=t,this.itemSize=e,this.count=t!==void 0?t.length/e:0,this.normalized=n,this.usage=Du,this.updateRanges=[],this.gpuType=Li,this.version=0}onUploadCallback(){}set needsUpdate(t){t===!0&&this.version++}setUsage(t){return this.usage=t,this}addUpdateRange(t,e){this.updateRanges.push({start:t,count:e})}clearUpdateRanges(){this.updateRanges.length=0}copy(t){return this.name=t.name,this.array=new t.array.constructor(t.array),this.itemSize=t.itemSize,this.count=t.count,this.normalized=t.normalized,this.usage=t.usage,this.gpuType=t.gpuType,this}copyAt(t,e,n){t*=this.itemSize,n*=e.itemSize;for(let s=0,r=this.itemSize;s<r;s++)this.array[t+s]=e.array[n+s];return this}copyArray(t){return this.array.set(t),this}applyMatrix3(t){if(this.itemSize===2)for(let e=0,n=this.count;e<n;e++)Bo.fromBufferAttribute(this,e),Bo.applyMatrix3(t),this.setXY(e,Bo.x,Bo.y);else if(this.itemSize===3)for(let e=0,n=this.count;e<n;e++)Ge.fromBufferAttribute(this,e),Ge.applyMatrix3(t),this.setXYZ(e,Ge.x,Ge.y,Ge.z);return this}applyMatrix4(t){for(let e=0,n=this.count;e<n;e++)Ge.fromBufferAttribute(this,e),Ge.applyMatrix4(t),this.setXYZ(e,Ge.x,Ge.y,Ge.z);return this}applyNormalMatrix(t){for(let e=0,n=this.count;e<n;e++)Ge.fromBufferAttribute(this,e),Ge.applyNormalMatrix(t),this.setXYZ(e,Ge.x,Ge.y,Ge.z);return this}transformDirection(t){for(let e=0,n=this.count;e<n;e++)Ge.fromBufferAttribute(this,e),Ge.transformDirection(t),this.setXYZ(e,Ge.x,Ge.y,Ge.z);return this}set(t,e=0){return this.array.set(t,e),this}getComponent(t,e){let n=this.array[t*this.itemSize+e];return this.normalized&&(n=ur(n,this.array)),n}setComponent(t,e,n){return this.normalized&&(n=yn(n,this.array)),this.array[t*this.itemSize+e]=n,this}getX(t){let e=this.array[t*this.itemSize];return this.normalized&&(e=ur(e,this.array)),e}setX(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize]=e,this}getY(t){let e=this.array[t*this.itemSize+1];return this.normalized&&(e=ur(e,this.array)),e}setY(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize+1]=e,this}getZ(t){let e=this.array[t*this.itemSize+2];return this.normalized&&(e=ur(e,this.array)),e}setZ(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize+2]=e,this}getW(t){let e=this.array[t*this.itemSize+3];return this.normalized&&(e=ur(e,this.array)),e}setW(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize+3]=e,this}setXY(t,e,n){return t*=this.itemSize,this.normalized&&(e=yn(e,this.array),n=yn(n,this.array)),this.array[t+0]=e,this.array[t+1]=n,this}setXYZ(t,e,n,s){return t*=this.itemSize,this.normalized&&(e=yn(e,this.array),n=yn(n,this.array),s=yn(s,this.array)),this.array[t+0]=e,this.array[t+1]=n,this.array[t+2]=s,this}setXYZW(t,e,n,s,r){return t*=this.itemSize,this.normalized&&(e=yn(e,this.array),n=yn(n,this.array),s=yn(s,this.array),r=yn(r,this.array)),this.array[t+0]=e,this.array[t+1]=n,this.array[t+2]=s,this.array[t+3]=r,this}onUpload(t){return this.onUploadCallback=t,this}clone(){return new this.constructor(this.array,this.itemSize).copy(this)}toJSON(){let t={itemSize:this.itemSize,type:this.array.constructor.name,array:Array.from(this.array),normalized:this.normalized};return this.name!==""&&(t.name=this.name),this.usage!==Du&&(t.usage=this.usage),t}};var ua=class extends an{constructor(t,e,n){super(new Uint16Array(t),e,n)}};var fa=class extends an{constructor(t,e,n){super(new Uint32Array(t),e,n)}};var ri=class extends an{constructor(t,e,n){super(new Float32Array(t),e,n)}},Cg=0,Gn=new We,Ul=new Yn,ar=new H,Pn=new Ts,jr=new Ts,on=new H,ai=class i extends Oi{constructor(){super(),this.isBufferGeometry=!0,Object.defineProperty(this,"id",{value:Cg++}),this.uuid=Ar(),this.name="",this.type="BufferGeometry",this.index=null,this.indirect=null,this.attributes={},this.morphAttributes={},this.morphTargetsRelative=!1,this.groups=[],this.boundingBox=null,this.boundingSphere=null,this.drawRange={start:0,count:1/0},this.userData={}}getIndex(){return this.index}setIndex(t){return Array.isArray(t)?this.index=new(Yf(t)?fa:ua)(t,1):this.index=t,this}setIndirect(t){return this.indirect=t,this}getIndirect(){return this.indirect}getAttribute(t){return this.attributes[t]}setAttribute(t,e){return this.attributes[t]=e,this}deleteAttribute(t){return delete this.attributes[t],this}hasAttribute(t){return this.attributes[t]!==void 0}addGroup(t,e,n=0){this.groups.push({start:t,count:e,materialIndex:n})}clearGroups(){this.groups=[]}setDrawRange(t,e){this.drawRange.start=t,this.drawRange.count=e}applyMatrix4(t){let e=this.attributes.position;e!==void 0&&(e.applyMatrix4(t),e.needsUpdate=!0);let n=this.attributes.normal;if(n!==void 0){let r=new te().getNormalMatrix(t);n.applyNormalMatrix(r),n.needsUpdate=!0}let s=this.attributes.tangent;return s!==void 0&&(s.transformDirection(t),s.needsUpdate=!0),this.boundingBox!==null&&this.computeBoundingBox(),this.boundingSphere!==null&&this.computeBoundingSphere(),this}applyQuaternion(t){return Gn.makeRotationFromQuaternion(t),this.applyMatrix4(Gn),this}rotateX(t){return Gn.makeRotationX(t),this.applyMatrix4(Gn),this}rotateY(t){return Gn.makeRotationY(t),this.applyMatrix4(Gn),this}rotateZ(t){return Gn.makeRotationZ(t),this.applyMatrix4(Gn),this}translate(t,e,n){return Gn.makeTranslation(t,e,n),this.applyMatrix4(Gn),this}scale(t,e,n){return Gn.makeScale(t,e,n),this.applyMatrix4(Gn),this}lookAt(t){return Ul.lookAt(t),Ul.updateMatrix(),this.applyMatrix4(Ul.matrix),this}center(){return this.computeBoundingBox(),this.boundingBox.getCenter(ar).negate(),this.translate(ar.x,ar.y,ar.z),this}setFromPoints(t){let e=this.getAttribute("position");if(e===void 0){let n=[];for(let s=0,r=t.length;s<r;s++){let o=t[s];n.push(o.x,o.y,o.z||0)}this.setAttribute("position",new ri(n,3))}else{for(let n=0,s=e.count;n<s;n++){let r=t[n];e.setXYZ(n,r.x,r.y,r.z||0)}t.length>e.count&&console.warn("THREE.BufferGeometry: Buffer size too small for points data. Use .dispose() and create a new geometry."),e.needsUpdate=!0}return this}computeBoundingBox(){this.boundingBox===null&&(this.boundingBox=new Ts);let t=this.attributes.position,e=this.morphAttributes.position;if(t&&t.isGLBufferAttribute){console.error("THREE.BufferGeometry.computeBoundingBox(): GLBufferAttribute requires a manual bounding box.",this),this.boundingBox.set(new H(-1/0,-1/0,-1/0),new H(1/0,1/0,1/0));return}if(t!==void 0){if(this.boundingBox.setFromBufferAttribute(t),e)for(let n=0,s=e.length;n<s;n++){let r=e[n];Pn.setFromBufferAttribute(r),this.morphTargetsRelative?(on.addVectors(this.boundingBox.min,Pn.min),this.boundingBox.expandByPoint(on),on.addVectors(this.boundingBox.max,Pn.max),this.boundingBox.expandByPoint(on)):(this.boundingBox.expandByPoint(Pn.min),this.boundingBox.expandByPoint(Pn.max))}}else this.boundingBox.makeEmpty();(isNaN(this.boundingBox.min.x)||isNaN(this.boundingBox.min.y)||isNaN(this.boundingBox.min.z))&&console.error('THREE.BufferGeometry.computeBoundingBox(): Computed min/max have NaN values. The "position" attribute is likely to have NaN values.',this)}computeBoundingSphere(){this.boundingSphere===null&&(this.boundingSphere=new br);let t=this.attributes.position,e=this.morphAttributes.position;if(t&&t.isGLBufferAttribute){console.error("THREE.BufferGeometry.computeBoundingSphere(): GLBufferAttribute requires a manual bounding sphere.",this),this.boundingSphere.set(new H,1/0);return}if(t){let n=this.boundingSphere.center;if(Pn.setFromBufferAttribute(t),e)for(let r=0,o=e.length;r<o;r++){let a=e[r];jr.setFromBufferAttribute(a),this.morphTargetsRelative?(on.addVectors(Pn.min,jr.min),Pn.expandByPoint(on),on.addVectors(Pn.max,jr.max),Pn.expandByPoint(on)):(Pn.expandByPoint(jr.min),Pn.expandByPoint(jr.max))}Pn.getCenter(n);let s=0;for(let r=0,o=t.count;r<o;r++)on.fromBufferAttribute(t,r),s=Math.max(s,n.distanceToSquared(on));if(e)for(let r=0,o=e.length;r<o;r++){let a=e[r],l=this.morphTargetsRelative;for(let c=0,u=a.count;c<u;c++)on.fromBufferAttribute(a,c),l&&(ar.fromBufferAttribute(t,c),on.add(ar)),s=Math.max(s,n.distanceToSquared(on))}this.boundingSphere.radius=Math.sqrt(s),isNaN(this.boundingSphere.radius)&&console.error('THREE.BufferGeometry.computeBoundingSphere(): Computed radius is NaN. The "position" attribute is likely to have NaN values.',this)}}computeTangents(){let t=this.index,e=this.attributes;if(t===null||e.position===void 0||e.normal===void 0||e.uv===void 0){console.error("THREE.BufferGeometry: .computeTangents() failed. Missing required attributes (index, position, normal or uv)");return}let n=e.position,s=e.normal,r=e.uv;this.hasAttribute("tangent")===!1&&this.setAttribute("tangent",new an(new Float32Array(4*n.count),4));let o=this.getAttribute("tangent"),a=[],l=[];for(let U=0;U<n.count;U++)a[U]=new H,l[U]=new H;let c=new H,u=new H,f=new H,h=new ie,p=new ie,_=new ie,x=new H,m=new H;function d(U,E,M){c.fromBufferAttribute(n,U),u.fromBufferAttribute(n,E),f.fromBufferAttribute(n,M),h.fromBufferAttribute(r,U),p.fromBufferAttribute(r,E),_.fromBufferAttribute(r,M),u.sub(c),f.sub(c),p.sub(h),_.sub(h);let C=1/(p.x*_.y-_.x*p.y);isFinite(C)&&(x.copy(u).multiplyScalar(_.y).addScaledVector(f,-p.y).multiplyScalar(C),m.copy(f).multiplyScalar(p.x).addScaledVector(u,-_.x).multiplyScalar(C),a[U].add(x),a[E].add(x),a[M].add(x),l[U].add(m),l[E].add(m),l[M].add(m))}let A=this.groups;A.length===0&&(A=[{start:0,count:t.count}]);for(let U=0,E=A.length;U<E;++U){let M=A[U],C=M.start,W=M.count;for(let V=C,Y=C+W;V<Y;V+=3)d(t.getX(V+0),t.getX(V+1),t.getX(V+2))}let w=new H,b=new H,D=new H,L=new H;function I(U){D.fromBufferAttribute(s,U),L.copy(D);let E=a[U];w.copy(E),w.sub(D.multiplyScalar(D.dot(E))).normalize(),b.crossVectors(L,E);let C=b.dot(l[U])<0?-1:1;o.setXYZW(U,w.x,w.y,w.z,C)}for(let U=0,E=A.length;U<E;++U){let M=A[U],C=M.start,W=M.count;for(let V=C,Y=C+W;V<Y;V+=3)I(t.getX(V+0)),I(t.getX(V+1)),I(t.getX(V+2))}}computeVertexNormals(){let t=this.index,e=this.getAttribute("position");if(e!==void 0){let n=this.getAttribute("normal");if(n===void 0)n=new an(new Float32Array(e.count*3),3),this.setAttribute("normal",n);else for(let h=0,p=n.count;h<p;h++)n.setXYZ(h,0,0,0);let s=new H,r=new H,o=new H,a=new H,l=new H,c=new H,u=new H,f=new H;if(t)for(let h=0,p=t.count;h<p;h+=3){let _=t.getX(h+0),x=t.getX(h+1),m=t.getX(h+2);s.fromBufferAttribute(e,_),r.fromBufferAttribute(e,x),o.fromBufferAttribute(e,m),u.subVectors(o,r),f.subVectors(s,r),u.cross(f),a.fromBufferAttribute(n,_),l.fromBufferAttribute(n,x),c.fromBufferAttribute(n,m),a.add(u),l.add(u),c.add(u),n.setXYZ(_,a.x,a.y,a.z),n.setXYZ(x,l.x,l.y,l.z),n.setXYZ(m,c.x,c.y,c.z)}else for(let h=0,p=e.count;h<p;h+=3)s.fromBufferAttribute(e,h+0),r.fromBufferAttribute(e,h+1),o.fromBufferAttribute(e,h+2),u.subVectors(o,r),f.subVectors(s,r),u.cross(f),n.setXYZ(h+0,u.x,u.y,u.z),n.setXYZ(h+1,u.x,u.y,u.z),n.setXYZ(h+2,u.x,u.y,u.z);this.normalizeNormals(),n.needsUpdate=!0}}normalizeNormals(){let t=this.attributes.normal;for(let e=0,n=t.count;e<n;e++)on.fromBufferAttribute(t,e),on.normalize(),t.setXYZ(e,on.x,on.y,on.z)}toNonIndexed(){function t(a,l){let c=a.array,u=a.itemSize,f=a.normalized,h=new c.constructor(l.length*u),p=0,_=0;for(let x=0,m=l.length;x<m;x++){a.isInterleavedBufferAttribute?p=l[x]*a.data.stride+a.offset:p=l[x]*u;for(let d=0;d<u;d++)h[_++]=c[p++]}return new an(h,u,f)}if(this.index===null)return console.warn("THREE.BufferGeometry.toNonIndexed(): BufferGeometry is already non-indexed."),this;let e=new i,n=this.index.array,s=this.attributes;for(let a in s){let l=s[a],c=t(l,n);e.setAttribute(a,c)}let r=this.morphAttributes;for(let a in r){let l=[],c=r[a];for(let u=0,f=c.length;u<f;u++){let h=c[u],p=t(h,n);l.push(p)}e.morphAttributes[a]=l}e.morphTargetsRelative=this.morphTargetsRelative;let o=this.groups;for(let a=0,l=o.length;a<l;a++){let c=o[a];e.addGroup(c.start,c.count,c.materialIndex)}return e}toJSON(){let t={metadata:{version:4.6,type:"BufferGeometry",generator:"BufferGeometry.toJSON"}};if(t.uuid=this.uuid,t.type=this.type,this.name!==""&&(t.name=this.name),Object.keys(this.userData).length>0&&(t.userData=this.userData),this.parameters!==void 0){let l=this.parameters;for(let c in l)l[c]!==void 0&&(t[c]=l[c]);return t}t.data={attributes:{}};let e=this.index;e!==null&&(t.data.index={type:e.array.constructor.name,array:Array.prototype.slice.call(e.array)});let n=this.attributes;for(let l in n){let c=n[l];t.data.attributes[l]=c.toJSON(t.data)}let s={},r=!1;for(let l in this.morphAttributes){let c=this.morphAttributes[l],u=[];for(let f=0,h=c.length;f<h;f++){let p=c[f];u.push(p.toJSON(t.data))}u.length>0&&(s[l]=u,r=!0)}r&&(t.data.morphAttributes=s,t.data.morphTargetsRelative=this.morphTargetsRelative);let o=this.groups;o.length>0&&(t.data.groups=JSON.parse(JSON.stringify(o)));let a=this.boundingSphere;return a!==null&&(t.data.boundingSphere={center:a.center.toArray(),radius:a.radius}),t}clone(){return new this.constructor().copy(this)}copy(t){this.index=null,this.attributes={},this.morphAttributes={},this.groups=[],this.boundingBox=null,this.boundingSphere=null;let e={};this.name=t.name;let n=t.index;n!==null&&this.setIndex(n.clone(e));let s=t.attributes;for(let c in s){let u=s[c];this.setAttribute(c,u.clone(e))}let r=t.morphAttributes;for(let c in r){let u=[],f=r[c];for(let h=0,p=f.length;h<p;h++)u.push(f[h].clone(e));this.morphAttributes[c]=u}this.morphTargetsRelative=t.morphTargetsRelative;let o=t.groups;for(let c=0,u=o.length;c<u;c++){let f=o[c];this.addGroup(f.start,f.count,f.materialIndex)}let a=t.boundingBox;a!==null&&(this.boundingBox=a.clone());let l=t.boundingSphere;return l!==null&&(this.boundingSphere=l.clone()),this.drawRange.start=t.drawRange.start,this.drawRange.count=t.drawRange.count,this.userData=t.userData,this}dispose(){this.dispatchEvent({type:"dispose"})}},Ku=new We,ms=new wr,ko=new br,ju=new H,zo=new H,Vo=new H,Ho=new H,Nl=new H,Go=new H,Qu=new H,Wo=new H,Ln=class extends Yn{constructor(t=new ai,e=new ha){super(),this.isMesh=!0,this.type="Mesh",this.geometry=t,this.material=e,this.updateMorphTargets()}copy(t,e){return super.copy(t,e),t.morphTargetInfluences!==void 0&&(this.morphTargetInfluences=t.morphTargetInfluences.slice()),t.morphTargetDictionary!==void 0&&(this.morphTargetDictionary=Object.assign({},t.morphTargetDictionary)),this.material=Array.isArray(t.material)?t.material.slice():t.material,this.geometry=t.geometry,this}updateMorphTargets(){let e=this.geometry.morphAttributes,n=Object.keys(e);if(n.length>0){let s=e[n[0]];if(s!==void 0){this.morphTargetInfluences=[],this.morphTargetDictionary={};for(let r=0,o=s.length;r<o;r++){let a=s[r].name||String(r);this.morphTargetInfluences.push(0),this.morphTargetDictionary[a]=r}}}}getVertexPosition(t,e){let n=this.geometry,s=n.attributes.position,r=n.morphAttributes.position,o=n.morphTargetsRelative;e.fromBufferAttribute(s,t);let a=this.morphTargetInfluences;if(r&&a){Go.set(0,0,0);for(let l=0,c=r.length;l<c;l++){let u=a[l],f=r[l];u!==0&&(Nl.fromBufferAttribute(f,t),o?Go.addScaledVector(Nl,u):Go.addScaledVector(Nl.sub(e),u))}e.add(Go)}return e}raycast(t,e){let n=this.geometry,s=this.material,r=this.matrixWorld;s!==void 0&&(n.boundingSphere===null&&n.computeBoundingSphere(),ko.copy(n.boundingSphere),ko.applyMatrix4(r),ms.copy(t.ray).recast(t.near),!(ko.containsPoint(ms.origin)===!1&&(ms.intersectSphere(ko,ju)===null||ms.origin.distanceToSquared(ju)>(t.far-t.near)**2))&&(Ku.copy(r).invert(),ms.copy(t.ray).applyMatrix4(Ku),!(n.boundingBox!==null&&ms.intersectsBox(n.boundingBox)===!1)&&this._computeIntersections(t,e,ms)))}_computeIntersections(t,e,n){let s,r=this.geometry,o=this.material,a=r.index,l=r.attributes.position,c=r.attributes.uv,u=r.attributes.uv1,f=r.attributes.normal,h=r.groups,p=r.drawRange;if(a!==null)if(Array.isArray(o))for(let _=0,x=h.length;_<x;_++){let m=h[_],d=o[m.materialIndex],A=Math.max(m.start,p.start),w=Math.min(a.count,Math.min(m.start+m.count,p.start+p.count));for(let b=A,D=w;b<D;b+=3){let L=a.getX(b),I=a.getX(b+1),U=a.getX(b+2);s=Xo(this,d,t,n,c,u,f,L,I,U),s&&(s.faceIndex=Math.floor(b/3),s.face.materialIndex=m.materialIndex,e.push(s))}}else{let _=Math.max(0,p.start),x=Math.min(a.count,p.start+p.count);for(let m=_,d=x;m<d;m+=3){let A=a.getX(m),w=a.getX(m+1),b=a.getX(m+2);s=Xo(this,o,t,n,c,u,f,A,w,b),s&&(s.faceIndex=Math.floor(m/3),e.push(s))}}else if(l!==void 0)if(Array.isArray(o))for(let _=0,x=h.length;_<x;_++){let m=h[_],d=o[m.materialIndex],A=Math.max(m.start,p.start),w=Math.min(l.count,Math.min(m.start+m.count,p.start+p.count));for(let b=A,D=w;b<D;b+=3){let L=b,I=b+1,U=b+2;s=Xo(this,d,t,n,c,u,f,L,I,U),s&&(s.faceIndex=Math.floor(b/3),s.face.materialIndex=m.materialIndex,e.push(s))}}else{let _=Math.max(0,p.start),x=Math.min(l.count,p.start+p.count);for(let m=_,d=x;m<d;m+=3){let A=m,w=m+1,b=m+2;s=Xo(this,o,t,n,c,u,f,A,w,b),s&&(s.faceIndex=Math.floor(m/3),e.push(s))}}}};function Rg(i,t,e,n,s,r,o,a){let l;if(t.side===wn?l=n.intersectTriangle(o,r,s,!0,a):l=n.intersectTriangle(s,r,o,t.side===is,a),l===null)return null;Wo.copy(a),Wo.applyMatrix4(i.matrixWorld);let c=e.ray.origin.distanceTo(Wo);return c<e.near||c>e.far?null:{distance:c,point:Wo.clone(),object:i}}function Xo(i,t,e,n,s,r,o,a,l,c){i.getVertexPosition(a,zo),i.getVertexPosition(l,Vo),i.getVertexPosition(c,Ho);let u=Rg(i,t,e,n,zo,Vo,Ho,Qu);if(u){let f=new H;Ms.getBarycoord(Qu,zo,Vo,Ho,f),s&&(u.uv=Ms.getInterpolatedAttribute(s,a,l,c,f,new ie)),r&&(u.uv1=Ms.getInterpolatedAttribute(r,a,l,c,f,new ie)),o&&(u.normal=Ms.getInterpolatedAttribute(o,a,l,c,f,new H),u.normal.dot(n.direction)>0&&u.normal.multiplyScalar(-1));let h={a,b:l,c,normal:new H,materialIndex:0};Ms.getNormal(zo,Vo,Ho,h.normal),u.face=h,u.barycoord=f}return u}var ao=class i extends ai{constructor(t=1,e=1,n=1,s=1,r=1,o=1){super(),this.type="BoxGeometry",this.parameters={width:t,height:e,depth:n,widthSegments:s,heightSegments:r,depthSegments:o};let a=this;s=Math.floor(s),r=Math.floor(r),o=Math.floor(o);let l=[],c=[],u=[],f=[],h=0,p=0;_("z","y","x",-1,-1,n,e,t,o,r,0),_("z","y","x",1,-1,n,e,-t,o,r,1),_("x","z","y",1,1,t,n,e,s,o,2),_("x","z","y",1,-1,t,n,-e,s,o,3),_("x","y","z",1,-1,t,e,n,s,r,4),_("x","y","z",-1,-1,t,e,-n,s,r,5),this.setIndex(l),this.setAttribute("position",new ri(c,3)),this.setAttribute("normal",new ri(u,3)),this.setAttribute("uv",new ri(f,2));function _(x,m,d,A,w,b,D,L,I,U,E){let M=b/I,C=D/U,W=b/2,V=D/2,Y=L/2,j=I+1,Z=U+1,et=0,K=0,ht=new H;for(let ot=0;ot<Z;ot++){let mt=ot*C-V;for(let dt=0;dt<j;dt++){let Gt=dt*M-W;ht[x]=Gt*A,ht[m]=mt*w,ht[d]=Y,c.push(ht.x,ht.y,ht.z),ht[x]=0,ht[m]=0,ht[d]=L>0?1:-1,u.push(ht.x,ht.y,ht.z),f.push(dt/I),f.push(1-ot/U),et+=1}}for(let ot=0;ot<U;ot++)for(let mt=0;mt<I;mt++){let dt=h+mt+j*ot,Gt=h+mt+j*(ot+1),$=h+(mt+1)+j*(ot+1),ct=h+(mt+1)+j*ot;l.push(dt,Gt,ct),l.push(Gt,$,ct),K+=6}a.addGroup(p,K,E),p+=K,h+=et}}copy(t){return super.copy(t),this.parameters=Object.assign({},t.parameters),this}static fromJSON(t){return new i(t.width,t.height,t.depth,t.widthSegments,t.heightSegments,t.depthSegments)}};function Er(i){let t={};for(let e in i){t[e]={};for(let n in i[e]){let s=i[e][n];s&&(s.isColor||s.isMatrix3||s.isMatrix4||s.isVector2||s.isVector3||s.isVector4||s.isTexture||s.isQuaternion)?s.isRenderTargetTexture?(console.warn("UniformsUtils: Textures of render targets cannot be cloned via cloneUniforms() or mergeUniforms()."),t[e][n]=null):t[e][n]=s.clone():Array.isArray(s)?t[e][n]=s.slice():t[e][n]=s}}return t}function vn(i){let t={};for(let e=0;e<i.length;e++){let n=Er(i[e]);for(let s in n)t[s]=n[s]}return t}function Pg(i){let t=[];for(let e=0;e<i.length;e++)t.push(i[e].clone());return t}function $f(i){let t=i.getRenderTarget();return t===null?i.outputColorSpace:t.isXRRenderTarget===!0?t.texture.colorSpace:de.workingColorSpace}var Ig={clone:Er,merge:vn},Lg=`void main() {
	gl_Position = projectionMatrix * modelViewMatrix * vec4( position, 1.0 );
}`,Dg=`void main() {
	gl_FragColor = vec4( 1.0, 0.0, 0.0, 1.0 );
}`,Nn=class extends As{static get type(){return"ShaderMaterial"}constructor(t){super(),this.isShaderMaterial=!0,this.defines={},this.uniforms={},this.uniformsGroups=[],this.vertexShader=Lg,this.fragmentShader=Dg,this.linewidth=1,this.wireframe=!1,this.wireframeLinewidth=1,this.fog=!1,this.lights=!1,this.clipping=!1,this.forceSinglePass=!0,this.extensions={clipCullDistance:!1,multiDraw:!1},this.defaultAttributeValues={color:[1,1,1],uv:[0,0],uv1:[0,0]},this.index0AttributeName=void 0,this.uniformsNeedUpdate=!1,this.glslVersion=null,t!==void 0&&this.setValues(t)}copy(t){return super.copy(t),this.fragmentShader=t.fragmentShader,this.vertexShader=t.vertexShader,this.uniforms=Er(t.uniforms),this.uniformsGroups=Pg(t.uniformsGroups),this.defines=Object.assign({},t.defines),this.wireframe=t.wireframe,this.wireframeLinewidth=t.wireframeLinewidth,this.fog=t.fog,this.lights=t.lights,this.clipping=t.clipping,this.extensions=Object.assign({},t.extensions),this.glslVersion=t.glslVersion,this}toJSON(t){let e=super.toJSON(t);e.glslVersion=this.glslVersion,e.uniforms={};for(let s in this.uniforms){let o=this.uniforms[s].value;o&&o.isTexture?e.uniforms[s]={type:"t",value:o.toJSON(t).uuid}:o&&o.isColor?e.uniforms[s]={type:"c",value:o.getHex()}:o&&o.isVector2?e.uniforms[s]={type:"v2",value:o.toArray()}:o&&o.isVector3?e.uniforms[s]={type:"v3",value:o.toArray()}:o&&o.isVector4?e.uniforms[s]={type:"v4",value:o.toArray()}:o&&o.isMatrix3?e.uniforms[s]={type:"m3",value:o.toArray()}:o&&o.isMatrix4?e.uniforms[s]={type:"m4",value:o.toArray()}:e.uniforms[s]={value:o}}Object.keys(this.defines).length>0&&(e.defines=this.defines),e.vertexShader=this.vertexShader,e.fragmentShader=this.fragmentShader,e.lights=this.lights,e.clipping=this.clipping;let n={};for(let s in this.extensions)this.extensions[s]===!0&&(n[s]=!0);return Object.keys(n).length>0&&(e.extensions=n),e}},da=class extends Yn{constructor(){super(),this.isCamera=!0,this.type="Camera",this.matrixWorldInverse=new We,this.projectionMatrix=new We,this.projectionMatrixInverse=new We,this.coordinateSystem=Di}copy(t,e){return super.copy(t,e),this.matrixWorldInverse.copy(t.matrixWorldInverse),this.projectionMatrix.copy(t.projectionMatrix),this.projectionMatrixInverse.copy(t.projectionMatrixInverse),this.coordinateSystem=t.coordinateSystem,this}getWorldDirection(t){return super.getWorldDirection(t).negate()}updateMatrixWorld(t){super.updateMatrixWorld(t),this.matrixWorldInverse.copy(this.matrixWorld).invert()}updateWorldMatrix(t,e){super.updateWorldMatrix(t,e),this.matrixWorldInverse.copy(this.matrixWorld).invert()}clone(){return new this.constructor().copy(this)}},Qi=new H,tf=new ie,ef=new ie,In=class extends da{constructor(t=50,e=1,n=.1,s=2e3){super(),this.isPerspectiveCamera=!0,this.type="PerspectiveCamera",this.fov=t,this.zoom=1,this.near=n,this.far=s,this.focus=10,this.aspect=e,this.view=null,this.filmGauge=35,this.filmOffset=0,this.updateProjectionMatrix()}copy(t,e){return super.copy(t,e),this.fov=t.fov,this.zoom=t.zoom,this.near=t.near,this.far=t.far,this.focus=t.focus,this.aspect=t.aspect,this.view=t.view===null?null:Object.assign({},t.view),this.filmGauge=t.filmGauge,this.filmOffset=t.filmOffset,this}setFocalLength(t){let e=.5*this.getFilmHeight()/t;this.fov=oo*2*Math.atan(e),this.updateProjectionMatrix()}getFocalLength(){let t=Math.tan(no*.5*this.fov);return .5*this.getFilmHeight()/t}getEffectiveFOV(){return oo*2*Math.atan(Math.tan(no*.5*this.fov)/this.zoom)}getFilmWidth(){return this.filmGauge*Math.min(this.aspect,1)}getFilmHeight(){return this.filmGauge/Math.max(this.aspect,1)}getViewBounds(t,e,n){Qi.set(-1,-1,.5).applyMatrix4(this.projectionMatrixInverse),e.set(Qi.x,Qi.y).multiplyScalar(-t/Qi.z),Qi.set(1,1,.5).applyMatrix4(this.projectionMatrixInverse),n.set(Qi.x,Qi.y).multiplyScalar(-t/Qi.z)}getViewSize(t,e){return this.getViewBounds(t,tf,ef),e.subVectors(ef,tf)}setViewOffset(t,e,n,s,r,o){this.aspect=t/e,this.view===null&&(this.view={enabled:!0,fullWidth:1,fullHeight:1,offsetX:0,offsetY:0,width:1,height:1}),this.view.enabled=!0,this.view.fullWidth=t,this.view.fullHeight=e,this.view.offsetX=n,this.view.offsetY=s,this.view.width=r,this.view.height=o,this.updateProjectionMatrix()}clearViewOffset(){this.view!==null&&(this.view.enabled=!1),this.updateProjectionMatrix()}updateProjectionMatrix(){let t=this.near,e=t*Math.tan(no*.5*this.fov)/this.zoom,n=2*e,s=this.aspect*n,r=-.5*s,o=this.view;if(this.view!==null&&this.view.enabled){let l=o.fullWidth,c=o.fullHeight;r+=o.offsetX*s/l,e-=o.offsetY*n/c,s*=o.width/l,n*=o.height/c}let a=this.filmOffset;a!==0&&(r+=t*a/this.getFilmWidth()),this.projectionMatrix.makePerspective(r,r+s,e,e-n,t,this.far,this.coordinateSystem),this.projectionMatrixInverse.copy(this.projectionMatrix).invert()}toJSON(t){let e=super.toJSON(t);return e.object.fov=this.fov,e.object.zoom=this.zoom,e.object.near=this.near,e.object.far=this.far,e.object.focus=this.focus,e.object.aspect=this.aspect,this.view!==null&&(e.object.view=Object.assign({},this.view)),e.object.filmGauge=this.filmGauge,e.object.filmOffset=this.filmOffset,e}},lr=-90,cr=1,Dc=class extends Yn{constructor(t,e,n){super(),this.type="CubeCamera",this.renderTarget=n,this.coordinateSystem=null,this.activeMipmapLevel=0;let s=new In(lr,cr,t,e);s.layers=this.layers,this.add(s);let r=new In(lr,cr,t,e);r.layers=this.layers,this.add(r);let o=new In(lr,cr,t,e);o.layers=this.layers,this.add(o);let a=new In(lr,cr,t,e);a.layers=this.layers,this.add(a);let l=new In(lr,cr,t,e);l.layers=this.layers,this.add(l);let c=new In(lr,cr,t,e);c.layers=this.layers,this.add(c)}updateCoordinateSystem(){let t=this.coordinateSystem,e=this.children.concat(),[n,s,r,o,a,l]=e;for(let c of e)this.remove(c);if(t===Di)n.up.set(0,1,0),n.lookAt(1,0,0),s.up.set(0,1,0),s.lookAt(-1,0,0),r.up.set(0,0,-1),r.lookAt(0,1,0),o.up.set(0,0,1),o.lookAt(0,-1,0),a.up.set(0,1,0),a.lookAt(0,0,1),l.up.set(0,1,0),l.lookAt(0,0,-1);else if(t===ra)n.up.set(0,-1,0),n.lookAt(-1,0,0),s.up.set(0,-1,0),s.lookAt(1,0,0),r.up.set(0,0,1),r.lookAt(0,1,0),o.up.set(0,0,-1),o.lookAt(0,-1,0),a.up.set(0,-1,0),a.lookAt(0,0,1),l.up.set(0,-1,0),l.lookAt(0,0,-1);else throw new Error("THREE.CubeCamera.updateCoordinateSystem(): Invalid coordinate system: "+t);for(let c of e)this.add(c),c.updateMatrixWorld()}update(t,e){this.parent===null&&this.updateMatrixWorld();let{renderTarget:n,activeMipmapLevel:s}=this;this.coordinateSystem!==t.coordinateSystem&&(this.coordinateSystem=t.coordinateSystem,this.updateCoordinateSystem());let[r,o,a,l,c,u]=this.children,f=t.getRenderTarget(),h=t.getActiveCubeFace(),p=t.getActiveMipmapLevel(),_=t.xr.enabled;t.xr.enabled=!1;let x=n.texture.generateMipmaps;n.texture.generateMipmaps=!1,t.setRenderTarget(n,0,s),t.render(e,r),t.setRenderTarget(n,1,s),t.render(e,o),t.setRenderTarget(n,2,s),t.render(e,a),t.setRenderTarget(n,3,s),t.render(e,l),t.setRenderTarget(n,4,s),t.render(e,c),n.texture.generateMipmaps=x,t.setRenderTarget(n,5,s),t.render(e,u),t.setRenderTarget(f,h,p),t.xr.enabled=_,n.texture.needsPMREMUpdate=!0}},pa=class extends Un{constructor(t,e,n,s,r,o,a,l,c,u){t=t!==void 0?t:[],e=e!==void 0?e:yr,super(t,e,n,s,r,o,a,l,c,u),this.isCubeTexture=!0,this.flipY=!1}get images(){return this.image}set images(t){this.image=t}},Uc=class extends Fi{constructor(t=1,e={}){super(t,t,e),this.isWebGLCubeRenderTarget=!0;let n={width:t,height:t,depth:1},s=[n,n,n,n,n,n];this.texture=new pa(s,e.mapping,e.wrapS,e.wrapT,e.magFilter,e.minFilter,e.format,e.type,e.anisotropy,e.colorSpace),this.texture.isRenderTargetTexture=!0,this.texture.generateMipmaps=e.generateMipmaps!==void 0?e.generateMipmaps:!1,this.texture.minFilter=e.minFilter!==void 0?e.minFilter:Xn}fromEquirectangularTexture(t,e){this.texture.type=e.type,this.texture.colorSpace=e.colorSpace,this.texture.generateMipmaps=e.generateMipmaps,this.texture.minFilter=e.minFilter,this.texture.magFilter=e.magFilter;let n={uniforms:{tEquirect:{value:null}},vertexShader:`

				varying vec3 vWorldDirection;

				vec3 transformDirection( in vec3 dir, in mat4 matrix ) {

					return normalize( ( matrix * vec4( dir, 0.0 ) ).xyz );

				}

				void main() {

					vWorldDirection = transformDirection( position, modelMatrix );

					#include <begin_vertex>
					#include <project_vertex>

				}
			`,fragmentShader:`

				uniform sampler2D tEquirect;

				varying vec3 vWorldDirection;

				#include <common>

				void main() {

					vec3 direction = normalize( vWorldDirection );

					vec2 sampleUV = equirectUv( direction );

					gl_FragColor = texture2D( tEquirect, sampleUV );

				}
			`},s=new ao(5,5,5),r=new Nn({name:"CubemapFromEquirect",uniforms:Er(n.uniforms),vertexShader:n.vertexShader,fragmentShader:n.fragmentShader,side:wn,blending:es});r.uniforms.tEquirect.value=e;let o=new Ln(s,r),a=e.minFilter;return e.minFilter===ws&&(e.minFilter=Xn),new Dc(1,10,this).update(t,o),e.minFilter=a,o.geometry.dispose(),o.material.dispose(),this}clear(t,e,n,s){let r=t.getRenderTarget();for(let o=0;o<6;o++)t.setRenderTarget(this,o),t.clear(e,n,s);t.setRenderTarget(r)}},Ol=new H,Ug=new H,Ng=new te,ni=class{constructor(t=new H(1,0,0),e=0){this.isPlane=!0,this.normal=t,this.constant=e}set(t,e){return this.normal.copy(t),this.constant=e,this}setComponents(t,e,n,s){return this.normal.set(t,e,n),this.constant=s,this}setFromNormalAndCoplanarPoint(t,e){return this.normal.copy(t),this.constant=-e.dot(this.normal),this}setFromCoplanarPoints(t,e,n){let s=Ol.subVectors(n,e).cross(Ug.subVectors(t,e)).normalize();return this.setFromNormalAndCoplanarPoint(s,t),this}copy(t){return this.normal.copy(t.normal),this.constant=t.constant,this}normalize(){let t=1/this.normal.length();return this.normal.multiplyScalar(t),this.constant*=t,this}negate(){return this.constant*=-1,this.normal.negate(),this}distanceToPoint(t){return this.normal.dot(t)+this.constant}distanceToSphere(t){return this.distanceToPoint(t.center)-t.radius}projectPoint(t,e){return e.copy(t).addScaledVector(this.normal,-this.distanceToPoint(t))}intersectLine(t,e){let n=t.delta(Ol),s=this.normal.dot(n);if(s===0)return this.distanceToPoint(t.start)===0?e.copy(t.start):null;let r=-(t.start.dot(this.normal)+this.constant)/s;return r<0||r>1?null:e.copy(t.start).addScaledVector(n,r)}intersectsLine(t){let e=this.distanceToPoint(t.start),n=this.distanceToPoint(t.end);return e<0&&n>0||n<0&&e>0}intersectsBox(t){return t.intersectsPlane(this)}intersectsSphere(t){return t.intersectsPlane(this)}coplanarPoint(t){return t.copy(this.normal).multiplyScalar(-this.constant)}applyMatrix4(t,e){let n=e||Ng.getNormalMatrix(t),s=this.coplanarPoint(Ol).applyMatrix4(t),r=this.normal.applyMatrix3(n).normalize();return this.constant=-s.dot(r),this}translate(t){return this.constant-=t.dot(this.normal),this}equals(t){return t.normal.equals(this.normal)&&t.constant===this.constant}clone(){return new this.constructor().copy(this)}},gs=new br,Yo=new H,ma=class{constructor(t=new ni,e=new ni,n=new ni,s=new ni,r=new ni,o=new ni){this.planes=[t,e,n,s,r,o]}set(t,e,n,s,r,o){let a=this.planes;return a[0].copy(t),a[1].copy(e),a[2].copy(n),a[3].copy(s),a[4].copy(r),a[5].copy(o),this}copy(t){let e=this.planes;for(let n=0;n<6;n++)e[n].copy(t.planes[n]);return this}setFromProjectionMatrix(t,e=Di){let n=this.planes,s=t.elements,r=s[0],o=s[1],a=s[2],l=s[3],c=s[4],u=s[5],f=s[6],h=s[7],p=s[8],_=s[9],x=s[10],m=s[11],d=s[12],A=s[13],w=s[14],b=s[15];if(n[0].setComponents(l-r,h-c,m-p,b-d).normalize(),n[1].setComponents(l+r,h+c,m+p,b+d).normalize(),n[2].setComponents(l+o,h+u,m+_,b+A).normalize(),n[3].setComponents(l-o,h-u,m-_,b-A).normalize(),n[4].setComponents(l-a,h-f,m-x,b-w).normalize(),e===Di)n[5].setComponents(l+a,h+f,m+x,b+w).normalize();else if(e===ra)n[5].setComponents(a,f,x,w).normalize();else throw new Error("THREE.Frustum.setFromProjectionMatrix(): Invalid coordinate system: "+e);return this}intersectsObject(t){if(t.boundingSphere!==void 0)t.boundingSphere===null&&t.computeBoundingSphere(),gs.copy(t.boundingSphere).applyMatrix4(t.matrixWorld);else{let e=t.geometry;e.boundingSphere===null&&e.computeBoundingSphere(),gs.copy(e.boundingSphere).applyMatrix4(t.matrixWorld)}return this.intersectsSphere(gs)}intersectsSprite(t){return gs.center.set(0,0,0),gs.radius=.7071067811865476,gs.applyMatrix4(t.matrixWorld),this.intersectsSphere(gs)}intersectsSphere(t){let e=this.planes,n=t.center,s=-t.radius;for(let r=0;r<6;r++)if(e[r].distanceToPoint(n)<s)return!1;return!0}intersectsBox(t){let e=this.planes;for(let n=0;n<6;n++){let s=e[n];if(Yo.x=s.normal.x>0?t.max.x:t.min.x,Yo.y=s.normal.y>0?t.max.y:t.min.y,Yo.z=s.normal.z>0?t.max.z:t.min.z,s.distanceToPoint(Yo)<0)return!1}return!0}containsPoint(t){let e=this.planes;for(let n=0;n<6;n++)if(e[n].distanceToPoint(t)<0)return!1;return!0}clone(){return new this.constructor().copy(this)}};function Zf(){let i=null,t=!1,e=null,n=null;function s(r,o){e(r,o),n=i.requestAnimationFrame(s)}return{start:function(){t!==!0&&e!==null&&(n=i.requestAnimationFrame(s),t=!0)},stop:function(){i.cancelAnimationFrame(n),t=!1},setAnimationLoop:function(r){e=r},setContext:function(r){i=r}}}function Og(i){let t=new WeakMap;function e(a,l){let c=a.array,u=a.usage,f=c.byteLength,h=i.createBuffer();i.bindBuffer(l,h),i.bufferData(l,c,u),a.onUploadCallback();let p;if(c instanceof Float32Array)p=i.FLOAT;else if(c instanceof Uint16Array)a.isFloat16BufferAttribute?p=i.HALF_FLOAT:p=i.UNSIGNED_SHORT;else if(c instanceof Int16Array)p=i.SHORT;else if(c instanceof Uint32Array)p=i.UNSIGNED_INT;else if(c instanceof Int32Array)p=i.INT;else if(c instanceof Int8Array)p=i.BYTE;else if(c instanceof Uint8Array)p=i.UNSIGNED_BYTE;else if(c instanceof Uint8ClampedArray)p=i.UNSIGNED_BYTE;else throw new Error("THREE.WebGLAttributes: Unsupported buffer data format: "+c);return{buffer:h,type:p,bytesPerElement:c.BYTES_PER_ELEMENT,version:a.version,size:f}}function n(a,l,c){let u=l.array,f=l.updateRanges;if(i.bindBuffer(c,a),f.length===0)i.bufferSubData(c,0,u);else{f.sort((p,_)=>p.start-_.start);let h=0;for(let p=1;p<f.length;p++){let _=f[h],x=f[p];x.start<=_.start+_.count+1?_.count=Math.max(_.count,x.start+x.count-_.start):(++h,f[h]=x)}f.length=h+1;for(let p=0,_=f.length;p<_;p++){let x=f[p];i.bufferSubData(c,x.start*u.BYTES_PER_ELEMENT,u,x.start,x.count)}l.clearUpdateRanges()}l.onUploadCallback()}function s(a){return a.isInterleavedBufferAttribute&&(a=a.data),t.get(a)}function r(a){a.isInterleavedBufferAttribute&&(a=a.data);let l=t.get(a);l&&(i.deleteBuffer(l.buffer),t.delete(a))}function o(a,l){if(a.isInterleavedBufferAttribute&&(a=a.data),a.isGLBufferAttribute){let u=t.get(a);(!u||u.version<a.version)&&t.set(a,{buffer:a.buffer,type:a.type,bytesPerElement:a.elementSize,version:a.version});return}let c=t.get(a);if(c===void 0)t.set(a,e(a,l));else if(c.version<a.version){if(c.size!==a.array.byteLength)throw new Error("THREE.WebGLAttributes: The size of the buffer attribute's array buffer does not match the original size. Resizing buffer attributes is not supported.");n(c.buffer,a,l),c.version=a.version}}return{get:s,remove:r,update:o}}var ga=class i extends ai{constructor(t=1,e=1,n=1,s=1){super(),this.type="PlaneGeometry",this.parameters={width:t,height:e,widthSegments:n,heightSegments:s};let r=t/2,o=e/2,a=Math.floor(n),l=Math.floor(s),c=a+1,u=l+1,f=t/a,h=e/l,p=[],_=[],x=[],m=[];for(let d=0;d<u;d++){let A=d*h-o;for(let w=0;w<c;w++){let b=w*f-r;_.push(b,-A,0),x.push(0,0,1),m.push(w/a),m.push(1-d/l)}}for(let d=0;d<l;d++)for(let A=0;A<a;A++){let w=A+c*d,b=A+c*(d+1),D=A+1+c*(d+1),L=A+1+c*d;p.push(w,b,L),p.push(b,D,L)}this.setIndex(p),this.setAttribute("position",new ri(_,3)),this.setAttribute("normal",new ri(x,3)),this.setAttribute("uv",new ri(m,2))}copy(t){return super.copy(t),this.parameters=Object.assign({},t.parameters),this}static fromJSON(t){return new i(t.width,t.height,t.widthSegments,t.heightSegments)}},Fg=`#ifdef USE_ALPHAHASH
	if ( diffuseColor.a < getAlphaHashThreshold( vPosition ) ) discard;
#endif`,Bg=`#ifdef USE_ALPHAHASH
	const float ALPHA_HASH_SCALE = 0.05;
	float hash2D( vec2 value ) {
		return fract( 1.0e4 * sin( 17.0 * value.x + 0.1 * value.y ) * ( 0.1 + abs( sin( 13.0 * value.y + value.x ) ) ) );
	}
	float hash3D( vec3 value ) {
		return hash2D( vec2( hash2D( value.xy ), value.z ) );
	}
	float getAlphaHashThreshold( vec3 position ) {
		float maxDeriv = max(
			length( dFdx( position.xyz ) ),
			length( dFdy( position.xyz ) )
		);
		float pixScale = 1.0 / ( ALPHA_HASH_SCALE * maxDeriv );
		vec2 pixScales = vec2(
			exp2( floor( log2( pixScale ) ) ),
			exp2( ceil( log2( pixScale ) ) )
		);
		vec2 alpha = vec2(
			hash3D( floor( pixScales.x * position.xyz ) ),
			hash3D( floor( pixScales.y * position.xyz ) )
		);
		float lerpFactor = fract( log2( pixScale ) );
		float x = ( 1.0 - lerpFactor ) * alpha.x + lerpFactor * alpha.y;
		float a = min( lerpFactor, 1.0 - lerpFactor );
		vec3 cases = vec3(
			x * x / ( 2.0 * a * ( 1.0 - a ) ),
			( x - 0.5 * a ) / ( 1.0 - a ),
			1.0 - ( ( 1.0 - x ) * ( 1.0 - x ) / ( 2.0 * a * ( 1.0 - a ) ) )
		);
		float threshold = ( x < ( 1.0 - a ) )
			? ( ( x < a ) ? cases.x : cases.y )
			: cases.z;
		return clamp( threshold , 1.0e-6, 1.0 );
	}
#endif`,kg=`#ifdef USE_ALPHAMAP
	diffuseColor.a *= texture2D( alphaMap, vAlphaMapUv ).g;
#endif`,zg=`#ifdef USE_ALPHAMAP
	uniform sampler2D alphaMap;
#endif`,Vg=`#ifdef USE_ALPHATEST
	#ifdef ALPHA_TO_COVERAGE
	diffuseColor.a = smoothstep( alphaTest, alphaTest + fwidth( diffuseColor.a ), diffuseColor.a );
	if ( diffuseColor.a == 0.0 ) discard;
	#else
	if ( diffuseColor.a < alphaTest ) discard;
	#endif
#endif`,Hg=`#ifdef USE_ALPHATEST
	uniform float alphaTest;
#endif`,Gg=`#ifdef USE_AOMAP
	float ambientOcclusion = ( texture2D( aoMap, vAoMapUv ).r - 1.0 ) * aoMapIntensity + 1.0;
	reflectedLight.indirectDiffuse *= ambientOcclusion;
	#if defined( USE_CLEARCOAT ) 
		clearcoatSpecularIndirect *= ambientOcclusion;
	#endif
	#if defined( USE_SHEEN ) 
		sheenSpecularIndirect *= ambientOcclusion;
	#endif
	#if defined( USE_ENVMAP ) && defined( STANDARD )
		float dotNV = saturate( dot( geometryNormal, geometryViewDir ) );
		reflectedLight.indirectSpecular *= computeSpecularOcclusion( dotNV, ambientOcclusion, material.roughness );
	#endif
#endif`,Wg=`#ifdef USE_AOMAP
	uniform sampler2D aoMap;
	uniform float aoMapIntensity;
#endif`,Xg=`#ifdef USE_BATCHING
	#if ! defined( GL_ANGLE_multi_draw )
	#define gl_DrawID _gl_DrawID
	uniform int _gl_DrawID;
	#endif
	uniform highp sampler2D batchingTexture;
	uniform highp usampler2D batchingIdTexture;
	mat4 getBatchingMatrix( const in float i ) {
		int size = textureSize( batchingTexture, 0 ).x;
		int j = int( i ) * 4;
		int x = j % size;
		int y = j / size;
		vec4 v1 = texelFetch( batchingTexture, ivec2( x, y ), 0 );
		vec4 v2 = texelFetch( batchingTexture, ivec2( x + 1, y ), 0 );
		vec4 v3 = texelFetch( batchingTexture, ivec2( x + 2, y ), 0 );
		vec4 v4 = texelFetch( batchingTexture, ivec2( x + 3, y ), 0 );
		return mat4( v1, v2, v3, v4 );
	}
	float getIndirectIndex( const in int i ) {
		int size = textureSize( batchingIdTexture, 0 ).x;
		int x = i % size;
		int y = i / size;
		return float( texelFetch( batchingIdTexture, ivec2( x, y ), 0 ).r );
	}
#endif
#ifdef USE_BATCHING_COLOR
	uniform sampler2D batchingColorTexture;
	vec3 getBatchingColor( const in float i ) {
		int size = textureSize( batchingColorTexture, 0 ).x;
		int j = int( i );
		int x = j % size;
		int y = j / size;
		return texelFetch( batchingColorTexture, ivec2( x, y ), 0 ).rgb;
	}
#endif`,Yg=`#ifdef USE_BATCHING
	mat4 batchingMatrix = getBatchingMatrix( getIndirectIndex( gl_DrawID ) );
#endif`,qg=`vec3 transformed = vec3( position );
#ifdef USE_ALPHAHASH
	vPosition = vec3( position );
#endif`,$g=`vec3 objectNormal = vec3( normal );
#ifdef USE_TANGENT
	vec3 objectTangent = vec3( tangent.xyz );
#endif`,Zg=`float G_BlinnPhong_Implicit( ) {
	return 0.25;
}
float D_BlinnPhong( const in float shininess, const in float dotNH ) {
	return RECIPROCAL_PI * ( shininess * 0.5 + 1.0 ) * pow( dotNH, shininess );
}
vec3 BRDF_BlinnPhong( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, const in vec3 specularColor, const in float shininess ) {
	vec3 halfDir = normalize( lightDir + viewDir );
	float dotNH = saturate( dot( normal, halfDir ) );
	float dotVH = saturate( dot( viewDir, halfDir ) );
	vec3 F = F_Schlick( specularColor, 1.0, dotVH );
	float G = G_BlinnPhong_Implicit( );
	float D = D_BlinnPhong( shininess, dotNH );
	return F * ( G * D );
} // validated`,Jg=`#ifdef USE_IRIDESCENCE
	const mat3 XYZ_TO_REC709 = mat3(
		 3.2404542, -0.9692660,  0.0556434,
		-1.5371385,  1.8760108, -0.2040259,
		-0.4985314,  0.0415560,  1.0572252
	);
	vec3 Fresnel0ToIor( vec3 fresnel0 ) {
		vec3 sqrtF0 = sqrt( fresnel0 );
		return ( vec3( 1.0 ) + sqrtF0 ) / ( vec3( 1.0 ) - sqrtF0 );
	}
	vec3 IorToFresnel0( vec3 transmittedIor, float incidentIor ) {
		return pow2( ( transmittedIor - vec3( incidentIor ) ) / ( transmittedIor + vec3( incidentIor ) ) );
	}
	float IorToFresnel0( float transmittedIor, float incidentIor ) {
		return pow2( ( transmittedIor - incidentIor ) / ( transmittedIor + incidentIor ));
	}
	vec3 evalSensitivity( float OPD, vec3 shift ) {
		float phase = 2.0 * PI * OPD * 1.0e-9;
		vec3 val = vec3( 5.4856e-13, 4.4201e-13, 5.2481e-13 );
		vec3 pos = vec3( 1.6810e+06, 1.7953e+06, 2.2084e+06 );
		vec3 var = vec3( 4.3278e+09, 9.3046e+09, 6.6121e+09 );
		vec3 xyz = val * sqrt( 2.0 * PI * var ) * cos( pos * phase + shift ) * exp( - pow2( phase ) * var );
		xyz.x += 9.7470e-14 * sqrt( 2.0 * PI * 4.5282e+09 ) * cos( 2.2399e+06 * phase + shift[ 0 ] ) * exp( - 4.5282e+09 * pow2( phase ) );
		xyz /= 1.0685e-7;
		vec3 rgb = XYZ_TO_REC709 * xyz;
		return rgb;
	}
	vec3 evalIridescence( float outsideIOR, float eta2, float cosTheta1, float thinFilmThickness, vec3 baseF0 ) {
		vec3 I;
		float iridescenceIOR = mix( outsideIOR, eta2, smoothstep( 0.0, 0.03, thinFilmThickness ) );
		float sinTheta2Sq = pow2( outsideIOR / iridescenceIOR ) * ( 1.0 - pow2( cosTheta1 ) );
		float cosTheta2Sq = 1.0 - sinTheta2Sq;
		if ( cosTheta2Sq < 0.0 ) {
			return vec3( 1.0 );
		}
		float cosTheta2 = sqrt( cosTheta2Sq );
		float R0 = IorToFresnel0( iridescenceIOR, outsideIOR );
		float R12 = F_Schlick( R0, 1.0, cosTheta1 );
		float T121 = 1.0 - R12;
		float phi12 = 0.0;
		if ( iridescenceIOR < outsideIOR ) phi12 = PI;
		float phi21 = PI - phi12;
		vec3 baseIOR = Fresnel0ToIor( clamp( baseF0, 0.0, 0.9999 ) );		vec3 R1 = IorToFresnel0( baseIOR, iridescenceIOR );
		vec3 R23 = F_Schlick( R1, 1.0, cosTheta2 );
		vec3 phi23 = vec3( 0.0 );
		if ( baseIOR[ 0 ] < iridescenceIOR ) phi23[ 0 ] = PI;
		if ( baseIOR[ 1 ] < iridescenceIOR ) phi23[ 1 ] = PI;
		if ( baseIOR[ 2 ] < iridescenceIOR ) phi23[ 2 ] = PI;
		float OPD = 2.0 * iridescenceIOR * thinFilmThickness * cosTheta2;
		vec3 phi = vec3( phi21 ) + phi23;
		vec3 R123 = clamp( R12 * R23, 1e-5, 0.9999 );
		vec3 r123 = sqrt( R123 );
		vec3 Rs = pow2( T121 ) * R23 / ( vec3( 1.0 ) - R123 );
		vec3 C0 = R12 + Rs;
		I = C0;
		vec3 Cm = Rs - T121;
		for ( int m = 1; m <= 2; ++ m ) {
			Cm *= r123;
			vec3 Sm = 2.0 * evalSensitivity( float( m ) * OPD, float( m ) * phi );
			I += Cm * Sm;
		}
		return max( I, vec3( 0.0 ) );
	}
#endif`,Kg=`#ifdef USE_BUMPMAP
	uniform sampler2D bumpMap;
	uniform float bumpScale;
	vec2 dHdxy_fwd() {
		vec2 dSTdx = dFdx( vBumpMapUv );
		vec2 dSTdy = dFdy( vBumpMapUv );
		float Hll = bumpScale * texture2D( bumpMap, vBumpMapUv ).x;
		float dBx = bumpScale * texture2D( bumpMap, vBumpMapUv + dSTdx ).x - Hll;
		float dBy = bumpScale * texture2D( bumpMap, vBumpMapUv + dSTdy ).x - Hll;
		return vec2( dBx, dBy );
	}
	vec3 perturbNormalArb( vec3 surf_pos, vec3 surf_norm, vec2 dHdxy, float faceDirection ) {
		vec3 vSigmaX = normalize( dFdx( surf_pos.xyz ) );
		vec3 vSigmaY = normalize( dFdy( surf_pos.xyz ) );
		vec3 vN = surf_norm;
		vec3 R1 = cross( vSigmaY, vN );
		vec3 R2 = cross( vN, vSigmaX );
		float fDet = dot( vSigmaX, R1 ) * faceDirection;
		vec3 vGrad = sign( fDet ) * ( dHdxy.x * R1 + dHdxy.y * R2 );
		return normalize( abs( fDet ) * surf_norm - vGrad );
	}
#endif`,jg=`#if NUM_CLIPPING_PLANES > 0
	vec4 plane;
	#ifdef ALPHA_TO_COVERAGE
		float distanceToPlane, distanceGradient;
		float clipOpacity = 1.0;
		#pragma unroll_loop_start
		for ( int i = 0; i < UNION_CLIPPING_PLANES; i ++ ) {
			plane = clippingPlanes[ i ];
			distanceToPlane = - dot( vClipPosition, plane.xyz ) + plane.w;
			distanceGradient = fwidth( distanceToPlane ) / 2.0;
			clipOpacity *= smoothstep( - distanceGradient, distanceGradient, distanceToPlane );
			if ( clipOpacity == 0.0 ) discard;
		}
		#pragma unroll_loop_end
		#if UNION_CLIPPING_PLANES < NUM_CLIPPING_PLANES
			float unionClipOpacity = 1.0;
			#pragma unroll_loop_start
			for ( int i = UNION_CLIPPING_PLANES; i < NUM_CLIPPING_PLANES; i ++ ) {
				plane = clippingPlanes[ i ];
				distanceToPlane = - dot( vClipPosition, plane.xyz ) + plane.w;
				distanceGradient = fwidth( distanceToPlane ) / 2.0;
				unionClipOpacity *= 1.0 - smoothstep( - distanceGradient, distanceGradient, distanceToPlane );
			}
			#pragma unroll_loop_end
			clipOpacity *= 1.0 - unionClipOpacity;
		#endif
		diffuseColor.a *= clipOpacity;
		if ( diffuseColor.a == 0.0 ) discard;
	#else
		#pragma unroll_loop_start
		for ( int i = 0; i < UNION_CLIPPING_PLANES; i ++ ) {
			plane = clippingPlanes[ i ];
			if ( dot( vClipPosition, plane.xyz ) > plane.w ) discard;
		}
		#pragma unroll_loop_end
		#if UNION_CLIPPING_PLANES < NUM_CLIPPING_PLANES
			bool clipped = true;
			#pragma unroll_loop_start
			for ( int i = UNION_CLIPPING_PLANES; i < NUM_CLIPPING_PLANES; i ++ ) {
				plane = clippingPlanes[ i ];
				clipped = ( dot( vClipPosition, plane.xyz ) > plane.w ) && clipped;
			}
			#pragma unroll_loop_end
			if ( clipped ) discard;
		#endif
	#endif
#endif`,Qg=`#if NUM_CLIPPING_PLANES > 0
	varying vec3 vClipPosition;
	uniform vec4 clippingPlanes[ NUM_CLIPPING_PLANES ];
#endif`,t0=`#if NUM_CLIPPING_PLANES > 0
	varying vec3 vClipPosition;
#endif`,e0=`#if NUM_CLIPPING_PLANES > 0
	vClipPosition = - mvPosition.xyz;
#endif`,n0=`#if defined( USE_COLOR_ALPHA )
	diffuseColor *= vColor;
#elif defined( USE_COLOR )
	diffuseColor.rgb *= vColor;
#endif`,i0=`#if defined( USE_COLOR_ALPHA )
	varying vec4 vColor;
#elif defined( USE_COLOR )
	varying vec3 vColor;
#endif`,s0=`#if defined( USE_COLOR_ALPHA )
	varying vec4 vColor;
#elif defined( USE_COLOR ) || defined( USE_INSTANCING_COLOR ) || defined( USE_BATCHING_COLOR )
	varying vec3 vColor;
#endif`,r0=`#if defined( USE_COLOR_ALPHA )
	vColor = vec4( 1.0 );
#elif defined( USE_COLOR ) || defined( USE_INSTANCING_COLOR ) || defined( USE_BATCHING_COLOR )
	vColor = vec3( 1.0 );
#endif
#ifdef USE_COLOR
	vColor *= color;
#endif
#ifdef USE_INSTANCING_COLOR
	vColor.xyz *= instanceColor.xyz;
#endif
#ifdef USE_BATCHING_COLOR
	vec3 batchingColor = getBatchingColor( getIndirectIndex( gl_DrawID ) );
	vColor.xyz *= batchingColor.xyz;
#endif`,o0=`#define PI 3.141592653589793
#define PI2 6.283185307179586
#define PI_HALF 1.5707963267948966
#define RECIPROCAL_PI 0.3183098861837907
#define RECIPROCAL_PI2 0.15915494309189535
#define EPSILON 1e-6
#ifndef saturate
#define saturate( a ) clamp( a, 0.0, 1.0 )
#endif
#define whiteComplement( a ) ( 1.0 - saturate( a ) )
float pow2( const in float x ) { return x*x; }
vec3 pow2( const in vec3 x ) { return x*x; }
float pow3( const in float x ) { return x*x*x; }
float pow4( const in float x ) { float x2 = x*x; return x2*x2; }
float max3( const in vec3 v ) { return max( max( v.x, v.y ), v.z ); }
float average( const in vec3 v ) { return dot( v, vec3( 0.3333333 ) ); }
highp float rand( const in vec2 uv ) {
	const highp float a = 12.9898, b = 78.233, c = 43758.5453;
	highp float dt = dot( uv.xy, vec2( a,b ) ), sn = mod( dt, PI );
	return fract( sin( sn ) * c );
}
#ifdef HIGH_PRECISION
	float precisionSafeLength( vec3 v ) { return length( v ); }
#else
	float precisionSafeLength( vec3 v ) {
		float maxComponent = max3( abs( v ) );
		return length( v / maxComponent ) * maxComponent;
	}
#endif
struct IncidentLight {
	vec3 color;
	vec3 direction;
	bool visible;
};
struct ReflectedLight {
	vec3 directDiffuse;
	vec3 directSpecular;
	vec3 indirectDiffuse;
	vec3 indirectSpecular;
};
#ifdef USE_ALPHAHASH
	varying vec3 vPosition;
#endif
vec3 transformDirection( in vec3 dir, in mat4 matrix ) {
	return normalize( ( matrix * vec4( dir, 0.0 ) ).xyz );
}
vec3 inverseTransformDirection( in vec3 dir, in mat4 matrix ) {
	return normalize( ( vec4( dir, 0.0 ) * matrix ).xyz );
}
mat3 transposeMat3( const in mat3 m ) {
	mat3 tmp;
	tmp[ 0 ] = vec3( m[ 0 ].x, m[ 1 ].x, m[ 2 ].x );
	tmp[ 1 ] = vec3( m[ 0 ].y, m[ 1 ].y, m[ 2 ].y );
	tmp[ 2 ] = vec3( m[ 0 ].z, m[ 1 ].z, m[ 2 ].z );
	return tmp;
}
bool isPerspectiveMatrix( mat4 m ) {
	return m[ 2 ][ 3 ] == - 1.0;
}
vec2 equirectUv( in vec3 dir ) {
	float u = atan( dir.z, dir.x ) * RECIPROCAL_PI2 + 0.5;
	float v = asin( clamp( dir.y, - 1.0, 1.0 ) ) * RECIPROCAL_PI + 0.5;
	return vec2( u, v );
}
vec3 BRDF_Lambert( const in vec3 diffuseColor ) {
	return RECIPROCAL_PI * diffuseColor;
}
vec3 F_Schlick( const in vec3 f0, const in float f90, const in float dotVH ) {
	float fresnel = exp2( ( - 5.55473 * dotVH - 6.98316 ) * dotVH );
	return f0 * ( 1.0 - fresnel ) + ( f90 * fresnel );
}
float F_Schlick( const in float f0, const in float f90, const in float dotVH ) {
	float fresnel = exp2( ( - 5.55473 * dotVH - 6.98316 ) * dotVH );
	return f0 * ( 1.0 - fresnel ) + ( f90 * fresnel );
} // validated`,a0=`#ifdef ENVMAP_TYPE_CUBE_UV
	#define cubeUV_minMipLevel 4.0
	#define cubeUV_minTileSize 16.0
	float getFace( vec3 direction ) {
		vec3 absDirection = abs( direction );
		float face = - 1.0;
		if ( absDirection.x > absDirection.z ) {
			if ( absDirection.x > absDirection.y )
				face = direction.x > 0.0 ? 0.0 : 3.0;
			else
				face = direction.y > 0.0 ? 1.0 : 4.0;
		} else {
			if ( absDirection.z > absDirection.y )
				face = direction.z > 0.0 ? 2.0 : 5.0;
			else
				face = direction.y > 0.0 ? 1.0 : 4.0;
		}
		return face;
	}
	vec2 getUV( vec3 direction, float face ) {
		vec2 uv;
		if ( face == 0.0 ) {
			uv = vec2( direction.z, direction.y ) / abs( direction.x );
		} else if ( face == 1.0 ) {
			uv = vec2( - direction.x, - direction.z ) / abs( direction.y );
		} else if ( face == 2.0 ) {
			uv = vec2( - direction.x, direction.y ) / abs( direction.z );
		} else if ( face == 3.0 ) {
			uv = vec2( - direction.z, direction.y ) / abs( direction.x );
		} else if ( face == 4.0 ) {
			uv = vec2( - direction.x, direction.z ) / abs( direction.y );
		} else {
			uv = vec2( direction.x, direction.y ) / abs( direction.z );
		}
		return 0.5 * ( uv + 1.0 );
	}
	vec3 bilinearCubeUV( sampler2D envMap, vec3 direction, float mipInt ) {
		float face = getFace( direction );
		float filterInt = max( cubeUV_minMipLevel - mipInt, 0.0 );
		mipInt = max( mipInt, cubeUV_minMipLevel );
		float faceSize = exp2( mipInt );
		highp vec2 uv = getUV( direction, face ) * ( faceSize - 2.0 ) + 1.0;
		if ( face > 2.0 ) {
			uv.y += faceSize;
			face -= 3.0;
		}
		uv.x += face * faceSize;
		uv.x += filterInt * 3.0 * cubeUV_minTileSize;
		uv.y += 4.0 * ( exp2( CUBEUV_MAX_MIP ) - faceSize );
		uv.x *= CUBEUV_TEXEL_WIDTH;
		uv.y *= CUBEUV_TEXEL_HEIGHT;
		#ifdef texture2DGradEXT
			return texture2DGradEXT( envMap, uv, vec2( 0.0 ), vec2( 0.0 ) ).rgb;
		#else
			return texture2D( envMap, uv ).rgb;
		#endif
	}
	#define cubeUV_r0 1.0
	#define cubeUV_m0 - 2.0
	#define cubeUV_r1 0.8
	#define cubeUV_m1 - 1.0
	#define cubeUV_r4 0.4
	#define cubeUV_m4 2.0
	#define cubeUV_r5 0.305
	#define cubeUV_m5 3.0
	#define cubeUV_r6 0.21
	#define cubeUV_m6 4.0
	float roughnessToMip( float roughness ) {
		float mip = 0.0;
		if ( roughness >= cubeUV_r1 ) {
			mip = ( cubeUV_r0 - roughness ) * ( cubeUV_m1 - cubeUV_m0 ) / ( cubeUV_r0 - cubeUV_r1 ) + cubeUV_m0;
		} else if ( roughness >= cubeUV_r4 ) {
			mip = ( cubeUV_r1 - roughness ) * ( cubeUV_m4 - cubeUV_m1 ) / ( cubeUV_r1 - cubeUV_r4 ) + cubeUV_m1;
		} else if ( roughness >= cubeUV_r5 ) {
			mip = ( cubeUV_r4 - roughness ) * ( cubeUV_m5 - cubeUV_m4 ) / ( cubeUV_r4 - cubeUV_r5 ) + cubeUV_m4;
		} else if ( roughness >= cubeUV_r6 ) {
			mip = ( cubeUV_r5 - roughness ) * ( cubeUV_m6 - cubeUV_m5 ) / ( cubeUV_r5 - cubeUV_r6 ) + cubeUV_m5;
		} else {
			mip = - 2.0 * log2( 1.16 * roughness );		}
		return mip;
	}
	vec4 textureCubeUV( sampler2D envMap, vec3 sampleDir, float roughness ) {
		float mip = clamp( roughnessToMip( roughness ), cubeUV_m0, CUBEUV_MAX_MIP );
		float mipF = fract( mip );
		float mipInt = floor( mip );
		vec3 color0 = bilinearCubeUV( envMap, sampleDir, mipInt );
		if ( mipF == 0.0 ) {
			return vec4( color0, 1.0 );
		} else {
			vec3 color1 = bilinearCubeUV( envMap, sampleDir, mipInt + 1.0 );
			return vec4( mix( color0, color1, mipF ), 1.0 );
		}
	}
#endif`,l0=`vec3 transformedNormal = objectNormal;
#ifdef USE_TANGENT
	vec3 transformedTangent = objectTangent;
#endif
#ifdef USE_BATCHING
	mat3 bm = mat3( batchingMatrix );
	transformedNormal /= vec3( dot( bm[ 0 ], bm[ 0 ] ), dot( bm[ 1 ], bm[ 1 ] ), dot( bm[ 2 ], bm[ 2 ] ) );
	transformedNormal = bm * transformedNormal;
	#ifdef USE_TANGENT
		transformedTangent = bm * transformedTangent;
	#endif
#endif
#ifdef USE_INSTANCING
	mat3 im = mat3( instanceMatrix );
	transformedNormal /= vec3( dot( im[ 0 ], im[ 0 ] ), dot( im[ 1 ], im[ 1 ] ), dot( im[ 2 ], im[ 2 ] ) );
	transformedNormal = im * transformedNormal;
	#ifdef USE_TANGENT
		transformedTangent = im * transformedTangent;
	#endif
#endif
transformedNormal = normalMatrix * transformedNormal;
#ifdef FLIP_SIDED
	transformedNormal = - transformedNormal;
#endif
#ifdef USE_TANGENT
	transformedTangent = ( modelViewMatrix * vec4( transformedTangent, 0.0 ) ).xyz;
	#ifdef FLIP_SIDED
		transformedTangent = - transformedTangent;
	#endif
#endif`,c0=`#ifdef USE_DISPLACEMENTMAP
	uniform sampler2D displacementMap;
	uniform float displacementScale;
	uniform float displacementBias;
#endif`,h0=`#ifdef USE_DISPLACEMENTMAP
	transformed += normalize( objectNormal ) * ( texture2D( displacementMap, vDisplacementMapUv ).x * displacementScale + displacementBias );
#endif`,u0=`#ifdef USE_EMISSIVEMAP
	vec4 emissiveColor = texture2D( emissiveMap, vEmissiveMapUv );
	#ifdef DECODE_VIDEO_TEXTURE_EMISSIVE
		emissiveColor = sRGBTransferEOTF( emissiveColor );
	#endif
	totalEmissiveRadiance *= emissiveColor.rgb;
#endif`,f0=`#ifdef USE_EMISSIVEMAP
	uniform sampler2D emissiveMap;
#endif`,d0="gl_FragColor = linearToOutputTexel( gl_FragColor );",p0=`vec4 LinearTransferOETF( in vec4 value ) {
	return value;
}
vec4 sRGBTransferEOTF( in vec4 value ) {
	return vec4( mix( pow( value.rgb * 0.9478672986 + vec3( 0.0521327014 ), vec3( 2.4 ) ), value.rgb * 0.0773993808, vec3( lessThanEqual( value.rgb, vec3( 0.04045 ) ) ) ), value.a );
}
vec4 sRGBTransferOETF( in vec4 value ) {
	return vec4( mix( pow( value.rgb, vec3( 0.41666 ) ) * 1.055 - vec3( 0.055 ), value.rgb * 12.92, vec3( lessThanEqual( value.rgb, vec3( 0.0031308 ) ) ) ), value.a );
}`,m0=`#ifdef USE_ENVMAP
	#ifdef ENV_WORLDPOS
		vec3 cameraToFrag;
		if ( isOrthographic ) {
			cameraToFrag = normalize( vec3( - viewMatrix[ 0 ][ 2 ], - viewMatrix[ 1 ][ 2 ], - viewMatrix[ 2 ][ 2 ] ) );
		} else {
			cameraToFrag = normalize( vWorldPosition - cameraPosition );
		}
		vec3 worldNormal = inverseTransformDirection( normal, viewMatrix );
		#ifdef ENVMAP_MODE_REFLECTION
			vec3 reflectVec = reflect( cameraToFrag, worldNormal );
		#else
			vec3 reflectVec = refract( cameraToFrag, worldNormal, refractionRatio );
		#endif
	#else
		vec3 reflectVec = vReflect;
	#endif
	#ifdef ENVMAP_TYPE_CUBE
		vec4 envColor = textureCube( envMap, envMapRotation * vec3( flipEnvMap * reflectVec.x, reflectVec.yz ) );
	#else
		vec4 envColor = vec4( 0.0 );
	#endif
	#ifdef ENVMAP_BLENDING_MULTIPLY
		outgoingLight = mix( outgoingLight, outgoingLight * envColor.xyz, specularStrength * reflectivity );
	#elif defined( ENVMAP_BLENDING_MIX )
		outgoingLight = mix( outgoingLight, envColor.xyz, specularStrength * reflectivity );
	#elif defined( ENVMAP_BLENDING_ADD )
		outgoingLight += envColor.xyz * specularStrength * reflectivity;
	#endif
#endif`,g0=`#ifdef USE_ENVMAP
	uniform float envMapIntensity;
	uniform float flipEnvMap;
	uniform mat3 envMapRotation;
	#ifdef ENVMAP_TYPE_CUBE
		uniform samplerCube envMap;
	#else
		uniform sampler2D envMap;
	#endif
	
#endif`,_0=`#ifdef USE_ENVMAP
	uniform float reflectivity;
	#if defined( USE_BUMPMAP ) || defined( USE_NORMALMAP ) || defined( PHONG ) || defined( LAMBERT )
		#define ENV_WORLDPOS
	#endif
	#ifdef ENV_WORLDPOS
		varying vec3 vWorldPosition;
		uniform float refractionRatio;
	#else
		varying vec3 vReflect;
	#endif
#endif`,x0=`#ifdef USE_ENVMAP
	#if defined( USE_BUMPMAP ) || defined( USE_NORMALMAP ) || defined( PHONG ) || defined( LAMBERT )
		#define ENV_WORLDPOS
	#endif
	#ifdef ENV_WORLDPOS
		
		varying vec3 vWorldPosition;
	#else
		varying vec3 vReflect;
		uniform float refractionRatio;
	#endif
#endif`,y0=`#ifdef USE_ENVMAP
	#ifdef ENV_WORLDPOS
		vWorldPosition = worldPosition.xyz;
	#else
		vec3 cameraToVertex;
		if ( isOrthographic ) {
			cameraToVertex = normalize( vec3( - viewMatrix[ 0 ][ 2 ], - viewMatrix[ 1 ][ 2 ], - viewMatrix[ 2 ][ 2 ] ) );
		} else {
			cameraToVertex = normalize( worldPosition.xyz - cameraPosition );
		}
		vec3 worldNormal = inverseTransformDirection( transformedNormal, viewMatrix );
		#ifdef ENVMAP_MODE_REFLECTION
			vReflect = reflect( cameraToVertex, worldNormal );
		#else
			vReflect = refract( cameraToVertex, worldNormal, refractionRatio );
		#endif
	#endif
#endif`,v0=`#ifdef USE_FOG
	vFogDepth = - mvPosition.z;
#endif`,M0=`#ifdef USE_FOG
	varying float vFogDepth;
#endif`,S0=`#ifdef USE_FOG
	#ifdef FOG_EXP2
		float fogFactor = 1.0 - exp( - fogDensity * fogDensity * vFogDepth * vFogDepth );
	#else
		float fogFactor = smoothstep( fogNear, fogFar, vFogDepth );
	#endif
	gl_FragColor.rgb = mix( gl_FragColor.rgb, fogColor, fogFactor );
#endif`,b0=`#ifdef USE_FOG
	uniform vec3 fogColor;
	varying float vFogDepth;
	#ifdef FOG_EXP2
		uniform float fogDensity;
	#else
		uniform float fogNear;
		uniform float fogFar;
	#endif
#endif`,w0=`#ifdef USE_GRADIENTMAP
	uniform sampler2D gradientMap;
#endif
vec3 getGradientIrradiance( vec3 normal, vec3 lightDirection ) {
	float dotNL = dot( normal, lightDirection );
	vec2 coord = vec2( dotNL * 0.5 + 0.5, 0.0 );
	#ifdef USE_GRADIENTMAP
		return vec3( texture2D( gradientMap, coord ).r );
	#else
		vec2 fw = fwidth( coord ) * 0.5;
		return mix( vec3( 0.7 ), vec3( 1.0 ), smoothstep( 0.7 - fw.x, 0.7 + fw.x, coord.x ) );
	#endif
}`,E0=`#ifdef USE_LIGHTMAP
	uniform sampler2D lightMap;
	uniform float lightMapIntensity;
#endif`,T0=`LambertMaterial material;
material.diffuseColor = diffuseColor.rgb;
material.specularStrength = specularStrength;`,A0=`varying vec3 vViewPosition;
struct LambertMaterial {
	vec3 diffuseColor;
	float specularStrength;
};
void RE_Direct_Lambert( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in LambertMaterial material, inout ReflectedLight reflectedLight ) {
	float dotNL = saturate( dot( geometryNormal, directLight.direction ) );
	vec3 irradiance = dotNL * directLight.color;
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectDiffuse_Lambert( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in LambertMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
#define RE_Direct				RE_Direct_Lambert
#define RE_IndirectDiffuse		RE_IndirectDiffuse_Lambert`,C0=`uniform bool receiveShadow;
uniform vec3 ambientLightColor;
#if defined( USE_LIGHT_PROBES )
	uniform vec3 lightProbe[ 9 ];
#endif
vec3 shGetIrradianceAt( in vec3 normal, in vec3 shCoefficients[ 9 ] ) {
	float x = normal.x, y = normal.y, z = normal.z;
	vec3 result = shCoefficients[ 0 ] * 0.886227;
	result += shCoefficients[ 1 ] * 2.0 * 0.511664 * y;
	result += shCoefficients[ 2 ] * 2.0 * 0.511664 * z;
	result += shCoefficients[ 3 ] * 2.0 * 0.511664 * x;
	result += shCoefficients[ 4 ] * 2.0 * 0.429043 * x * y;
	result += shCoefficients[ 5 ] * 2.0 * 0.429043 * y * z;
	result += shCoefficients[ 6 ] * ( 0.743125 * z * z - 0.247708 );
	result += shCoefficients[ 7 ] * 2.0 * 0.429043 * x * z;
	result += shCoefficients[ 8 ] * 0.429043 * ( x * x - y * y );
	return result;
}
vec3 getLightProbeIrradiance( const in vec3 lightProbe[ 9 ], const in vec3 normal ) {
	vec3 worldNormal = inverseTransformDirection( normal, viewMatrix );
	vec3 irradiance = shGetIrradianceAt( worldNormal, lightProbe );
	return irradiance;
}
vec3 getAmbientLightIrradiance( const in vec3 ambientLightColor ) {
	vec3 irradiance = ambientLightColor;
	return irradiance;
}
float getDistanceAttenuation( const in float lightDistance, const in float cutoffDistance, const in float decayExponent ) {
	float distanceFalloff = 1.0 / max( pow( lightDistance, decayExponent ), 0.01 );
	if ( cutoffDistance > 0.0 ) {
		distanceFalloff *= pow2( saturate( 1.0 - pow4( lightDistance / cutoffDistance ) ) );
	}
	return distanceFalloff;
}
float getSpotAttenuation( const in float coneCosine, const in float penumbraCosine, const in float angleCosine ) {
	return smoothstep( coneCosine, penumbraCosine, angleCosine );
}
#if NUM_DIR_LIGHTS > 0
	struct DirectionalLight {
		vec3 direction;
		vec3 color;
	};
	uniform DirectionalLight directionalLights[ NUM_DIR_LIGHTS ];
	void getDirectionalLightInfo( const in DirectionalLight directionalLight, out IncidentLight light ) {
		light.color = directionalLight.color;
		light.direction = directionalLight.direction;
		light.visible = true;
	}
#endif
#if NUM_POINT_LIGHTS > 0
	struct PointLight {
		vec3 position;
		vec3 color;
		float distance;
		float decay;
	};
	uniform PointLight pointLights[ NUM_POINT_LIGHTS ];
	void getPointLightInfo( const in PointLight pointLight, const in vec3 geometryPosition, out IncidentLight light ) {
		vec3 lVector = pointLight.position - geometryPosition;
		light.direction = normalize( lVector );
		float lightDistance = length( lVector );
		light.color = pointLight.color;
		light.color *= getDistanceAttenuation( lightDistance, pointLight.distance, pointLight.decay );
		light.visible = ( light.color != vec3( 0.0 ) );
	}
#endif
#if NUM_SPOT_LIGHTS > 0
	struct SpotLight {
		vec3 position;
		vec3 direction;
		vec3 color;
		float distance;
		float decay;
		float coneCos;
		float penumbraCos;
	};
	uniform SpotLight spotLights[ NUM_SPOT_LIGHTS ];
	void getSpotLightInfo( const in SpotLight spotLight, const in vec3 geometryPosition, out IncidentLight light ) {
		vec3 lVector = spotLight.position - geometryPosition;
		light.direction = normalize( lVector );
		float angleCos = dot( light.direction, spotLight.direction );
		float spotAttenuation = getSpotAttenuation( spotLight.coneCos, spotLight.penumbraCos, angleCos );
		if ( spotAttenuation > 0.0 ) {
			float lightDistance = length( lVector );
			light.color = spotLight.color * spotAttenuation;
			light.color *= getDistanceAttenuation( lightDistance, spotLight.distance, spotLight.decay );
			light.visible = ( light.color != vec3( 0.0 ) );
		} else {
			light.color = vec3( 0.0 );
			light.visible = false;
		}
	}
#endif
#if NUM_RECT_AREA_LIGHTS > 0
	struct RectAreaLight {
		vec3 color;
		vec3 position;
		vec3 halfWidth;
		vec3 halfHeight;
	};
	uniform sampler2D ltc_1;	uniform sampler2D ltc_2;
	uniform RectAreaLight rectAreaLights[ NUM_RECT_AREA_LIGHTS ];
#endif
#if NUM_HEMI_LIGHTS > 0
	struct HemisphereLight {
		vec3 direction;
		vec3 skyColor;
		vec3 groundColor;
	};
	uniform HemisphereLight hemisphereLights[ NUM_HEMI_LIGHTS ];
	vec3 getHemisphereLightIrradiance( const in HemisphereLight hemiLight, const in vec3 normal ) {
		float dotNL = dot( normal, hemiLight.direction );
		float hemiDiffuseWeight = 0.5 * dotNL + 0.5;
		vec3 irradiance = mix( hemiLight.groundColor, hemiLight.skyColor, hemiDiffuseWeight );
		return irradiance;
	}
#endif`,R0=`#ifdef USE_ENVMAP
	vec3 getIBLIrradiance( const in vec3 normal ) {
		#ifdef ENVMAP_TYPE_CUBE_UV
			vec3 worldNormal = inverseTransformDirection( normal, viewMatrix );
			vec4 envMapColor = textureCubeUV( envMap, envMapRotation * worldNormal, 1.0 );
			return PI * envMapColor.rgb * envMapIntensity;
		#else
			return vec3( 0.0 );
		#endif
	}
	vec3 getIBLRadiance( const in vec3 viewDir, const in vec3 normal, const in float roughness ) {
		#ifdef ENVMAP_TYPE_CUBE_UV
			vec3 reflectVec = reflect( - viewDir, normal );
			reflectVec = normalize( mix( reflectVec, normal, roughness * roughness) );
			reflectVec = inverseTransformDirection( reflectVec, viewMatrix );
			vec4 envMapColor = textureCubeUV( envMap, envMapRotation * reflectVec, roughness );
			return envMapColor.rgb * envMapIntensity;
		#else
			return vec3( 0.0 );
		#endif
	}
	#ifdef USE_ANISOTROPY
		vec3 getIBLAnisotropyRadiance( const in vec3 viewDir, const in vec3 normal, const in float roughness, const in vec3 bitangent, const in float anisotropy ) {
			#ifdef ENVMAP_TYPE_CUBE_UV
				vec3 bentNormal = cross( bitangent, viewDir );
				bentNormal = normalize( cross( bentNormal, bitangent ) );
				bentNormal = normalize( mix( bentNormal, normal, pow2( pow2( 1.0 - anisotropy * ( 1.0 - roughness ) ) ) ) );
				return getIBLRadiance( viewDir, bentNormal, roughness );
			#else
				return vec3( 0.0 );
			#endif
		}
	#endif
#endif`,P0=`ToonMaterial material;
material.diffuseColor = diffuseColor.rgb;`,I0=`varying vec3 vViewPosition;
struct ToonMaterial {
	vec3 diffuseColor;
};
void RE_Direct_Toon( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in ToonMaterial material, inout ReflectedLight reflectedLight ) {
	vec3 irradiance = getGradientIrradiance( geometryNormal, directLight.direction ) * directLight.color;
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectDiffuse_Toon( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in ToonMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
#define RE_Direct				RE_Direct_Toon
#define RE_IndirectDiffuse		RE_IndirectDiffuse_Toon`,L0=`BlinnPhongMaterial material;
material.diffuseColor = diffuseColor.rgb;
material.specularColor = specular;
material.specularShininess = shininess;
material.specularStrength = specularStrength;`,D0=`varying vec3 vViewPosition;
struct BlinnPhongMaterial {
	vec3 diffuseColor;
	vec3 specularColor;
	float specularShininess;
	float specularStrength;
};
void RE_Direct_BlinnPhong( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in BlinnPhongMaterial material, inout ReflectedLight reflectedLight ) {
	float dotNL = saturate( dot( geometryNormal, directLight.direction ) );
	vec3 irradiance = dotNL * directLight.color;
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
	reflectedLight.directSpecular += irradiance * BRDF_BlinnPhong( directLight.direction, geometryViewDir, geometryNormal, material.specularColor, material.specularShininess ) * material.specularStrength;
}
void RE_IndirectDiffuse_BlinnPhong( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in BlinnPhongMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
#define RE_Direct				RE_Direct_BlinnPhong
#define RE_IndirectDiffuse		RE_IndirectDiffuse_BlinnPhong`,U0=`PhysicalMaterial material;
material.diffuseColor = diffuseColor.rgb * ( 1.0 - metalnessFactor );
vec3 dxy = max( abs( dFdx( nonPerturbedNormal ) ), abs( dFdy( nonPerturbedNormal ) ) );
float geometryRoughness = max( max( dxy.x, dxy.y ), dxy.z );
material.roughness = max( roughnessFactor, 0.0525 );material.roughness += geometryRoughness;
material.roughness = min( material.roughness, 1.0 );
#ifdef IOR
	material.ior = ior;
	#ifdef USE_SPECULAR
		float specularIntensityFactor = specularIntensity;
		vec3 specularColorFactor = specularColor;
		#ifdef USE_SPECULAR_COLORMAP
			specularColorFactor *= texture2D( specularColorMap, vSpecularColorMapUv ).rgb;
		#endif
		#ifdef USE_SPECULAR_INTENSITYMAP
			specularIntensityFactor *= texture2D( specularIntensityMap, vSpecularIntensityMapUv ).a;
		#endif
		material.specularF90 = mix( specularIntensityFactor, 1.0, metalnessFactor );
	#else
		float specularIntensityFactor = 1.0;
		vec3 specularColorFactor = vec3( 1.0 );
		material.specularF90 = 1.0;
	#endif
	material.specularColor = mix( min( pow2( ( material.ior - 1.0 ) / ( material.ior + 1.0 ) ) * specularColorFactor, vec3( 1.0 ) ) * specularIntensityFactor, diffuseColor.rgb, metalnessFactor );
#else
	material.specularColor = mix( vec3( 0.04 ), diffuseColor.rgb, metalnessFactor );
	material.specularF90 = 1.0;
#endif
#ifdef USE_CLEARCOAT
	material.clearcoat = clearcoat;
	material.clearcoatRoughness = clearcoatRoughness;
	material.clearcoatF0 = vec3( 0.04 );
	material.clearcoatF90 = 1.0;
	#ifdef USE_CLEARCOATMAP
		material.clearcoat *= texture2D( clearcoatMap, vClearcoatMapUv ).x;
	#endif
	#ifdef USE_CLEARCOAT_ROUGHNESSMAP
		material.clearcoatRoughness *= texture2D( clearcoatRoughnessMap, vClearcoatRoughnessMapUv ).y;
	#endif
	material.clearcoat = saturate( material.clearcoat );	material.clearcoatRoughness = max( material.clearcoatRoughness, 0.0525 );
	material.clearcoatRoughness += geometryRoughness;
	material.clearcoatRoughness = min( material.clearcoatRoughness, 1.0 );
#endif
#ifdef USE_DISPERSION
	material.dispersion = dispersion;
#endif
#ifdef USE_IRIDESCENCE
	material.iridescence = iridescence;
	material.iridescenceIOR = iridescenceIOR;
	#ifdef USE_IRIDESCENCEMAP
		material.iridescence *= texture2D( iridescenceMap, vIridescenceMapUv ).r;
	#endif
	#ifdef USE_IRIDESCENCE_THICKNESSMAP
		material.iridescenceThickness = (iridescenceThicknessMaximum - iridescenceThicknessMinimum) * texture2D( iridescenceThicknessMap, vIridescenceThicknessMapUv ).g + iridescenceThicknessMinimum;
	#else
		material.iridescenceThickness = iridescenceThicknessMaximum;
	#endif
#endif
#ifdef USE_SHEEN
	material.sheenColor = sheenColor;
	#ifdef USE_SHEEN_COLORMAP
		material.sheenColor *= texture2D( sheenColorMap, vSheenColorMapUv ).rgb;
	#endif
	material.sheenRoughness = clamp( sheenRoughness, 0.07, 1.0 );
	#ifdef USE_SHEEN_ROUGHNESSMAP
		material.sheenRoughness *= texture2D( sheenRoughnessMap, vSheenRoughnessMapUv ).a;
	#endif
#endif
#ifdef USE_ANISOTROPY
	#ifdef USE_ANISOTROPYMAP
		mat2 anisotropyMat = mat2( anisotropyVector.x, anisotropyVector.y, - anisotropyVector.y, anisotropyVector.x );
		vec3 anisotropyPolar = texture2D( anisotropyMap, vAnisotropyMapUv ).rgb;
		vec2 anisotropyV = anisotropyMat * normalize( 2.0 * anisotropyPolar.rg - vec2( 1.0 ) ) * anisotropyPolar.b;
	#else
		vec2 anisotropyV = anisotropyVector;
	#endif
	material.anisotropy = length( anisotropyV );
	if( material.anisotropy == 0.0 ) {
		anisotropyV = vec2( 1.0, 0.0 );
	} else {
		anisotropyV /= material.anisotropy;
		material.anisotropy = saturate( material.anisotropy );
	}
	material.alphaT = mix( pow2( material.roughness ), 1.0, pow2( material.anisotropy ) );
	material.anisotropyT = tbn[ 0 ] * anisotropyV.x + tbn[ 1 ] * anisotropyV.y;
	material.anisotropyB = tbn[ 1 ] * anisotropyV.x - tbn[ 0 ] * anisotropyV.y;
#endif`,N0=`struct PhysicalMaterial {
	vec3 diffuseColor;
	float roughness;
	vec3 specularColor;
	float specularF90;
	float dispersion;
	#ifdef USE_CLEARCOAT
		float clearcoat;
		float clearcoatRoughness;
		vec3 clearcoatF0;
		float clearcoatF90;
	#endif
	#ifdef USE_IRIDESCENCE
		float iridescence;
		float iridescenceIOR;
		float iridescenceThickness;
		vec3 iridescenceFresnel;
		vec3 iridescenceF0;
	#endif
	#ifdef USE_SHEEN
		vec3 sheenColor;
		float sheenRoughness;
	#endif
	#ifdef IOR
		float ior;
	#endif
	#ifdef USE_TRANSMISSION
		float transmission;
		float transmissionAlpha;
		float thickness;
		float attenuationDistance;
		vec3 attenuationColor;
	#endif
	#ifdef USE_ANISOTROPY
		float anisotropy;
		float alphaT;
		vec3 anisotropyT;
		vec3 anisotropyB;
	#endif
};
vec3 clearcoatSpecularDirect = vec3( 0.0 );
vec3 clearcoatSpecularIndirect = vec3( 0.0 );
vec3 sheenSpecularDirect = vec3( 0.0 );
vec3 sheenSpecularIndirect = vec3(0.0 );
vec3 Schlick_to_F0( const in vec3 f, const in float f90, const in float dotVH ) {
    float x = clamp( 1.0 - dotVH, 0.0, 1.0 );
    float x2 = x * x;
    float x5 = clamp( x * x2 * x2, 0.0, 0.9999 );
    return ( f - vec3( f90 ) * x5 ) / ( 1.0 - x5 );
}
float V_GGX_SmithCorrelated( const in float alpha, const in float dotNL, const in float dotNV ) {
	float a2 = pow2( alpha );
	float gv = dotNL * sqrt( a2 + ( 1.0 - a2 ) * pow2( dotNV ) );
	float gl = dotNV * sqrt( a2 + ( 1.0 - a2 ) * pow2( dotNL ) );
	return 0.5 / max( gv + gl, EPSILON );
}
float D_GGX( const in float alpha, const in float dotNH ) {
	float a2 = pow2( alpha );
	float denom = pow2( dotNH ) * ( a2 - 1.0 ) + 1.0;
	return RECIPROCAL_PI * a2 / pow2( denom );
}
#ifdef USE_ANISOTROPY
	float V_GGX_SmithCorrelated_Anisotropic( const in float alphaT, const in float alphaB, const in float dotTV, const in float dotBV, const in float dotTL, const in float dotBL, const in float dotNV, const in float dotNL ) {
		float gv = dotNL * length( vec3( alphaT * dotTV, alphaB * dotBV, dotNV ) );
		float gl = dotNV * length( vec3( alphaT * dotTL, alphaB * dotBL, dotNL ) );
		float v = 0.5 / ( gv + gl );
		return saturate(v);
	}
	float D_GGX_Anisotropic( const in float alphaT, const in float alphaB, const in float dotNH, const in float dotTH, const in float dotBH ) {
		float a2 = alphaT * alphaB;
		highp vec3 v = vec3( alphaB * dotTH, alphaT * dotBH, a2 * dotNH );
		highp float v2 = dot( v, v );
		float w2 = a2 / v2;
		return RECIPROCAL_PI * a2 * pow2 ( w2 );
	}
#endif
#ifdef USE_CLEARCOAT
	vec3 BRDF_GGX_Clearcoat( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, const in PhysicalMaterial material) {
		vec3 f0 = material.clearcoatF0;
		float f90 = material.clearcoatF90;
		float roughness = material.clearcoatRoughness;
		float alpha = pow2( roughness );
		vec3 halfDir = normalize( lightDir + viewDir );
		float dotNL = saturate( dot( normal, lightDir ) );
		float dotNV = saturate( dot( normal, viewDir ) );
		float dotNH = saturate( dot( normal, halfDir ) );
		float dotVH = saturate( dot( viewDir, halfDir ) );
		vec3 F = F_Schlick( f0, f90, dotVH );
		float V = V_GGX_SmithCorrelated( alpha, dotNL, dotNV );
		float D = D_GGX( alpha, dotNH );
		return F * ( V * D );
	}
#endif
vec3 BRDF_GGX( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, const in PhysicalMaterial material ) {
	vec3 f0 = material.specularColor;
	float f90 = material.specularF90;
	float roughness = material.roughness;
	float alpha = pow2( roughness );
	vec3 halfDir = normalize( lightDir + viewDir );
	float dotNL = saturate( dot( normal, lightDir ) );
	float dotNV = saturate( dot( normal, viewDir ) );
	float dotNH = saturate( dot( normal, halfDir ) );
	float dotVH = saturate( dot( viewDir, halfDir ) );
	vec3 F = F_Schlick( f0, f90, dotVH );
	#ifdef USE_IRIDESCENCE
		F = mix( F, material.iridescenceFresnel, material.iridescence );
	#endif
	#ifdef USE_ANISOTROPY
		float dotTL = dot( material.anisotropyT, lightDir );
		float dotTV = dot( material.anisotropyT, viewDir );
		float dotTH = dot( material.anisotropyT, halfDir );
		float dotBL = dot( material.anisotropyB, lightDir );
		float dotBV = dot( material.anisotropyB, viewDir );
		float dotBH = dot( material.anisotropyB, halfDir );
		float V = V_GGX_SmithCorrelated_Anisotropic( material.alphaT, alpha, dotTV, dotBV, dotTL, dotBL, dotNV, dotNL );
		float D = D_GGX_Anisotropic( material.alphaT, alpha, dotNH, dotTH, dotBH );
	#else
		float V = V_GGX_SmithCorrelated( alpha, dotNL, dotNV );
		float D = D_GGX( alpha, dotNH );
	#endif
	return F * ( V * D );
}
vec2 LTC_Uv( const in vec3 N, const in vec3 V, const in float roughness ) {
	const float LUT_SIZE = 64.0;
	const float LUT_SCALE = ( LUT_SIZE - 1.0 ) / LUT_SIZE;
	const float LUT_BIAS = 0.5 / LUT_SIZE;
	float dotNV = saturate( dot( N, V ) );
	vec2 uv = vec2( roughness, sqrt( 1.0 - dotNV ) );
	uv = uv * LUT_SCALE + LUT_BIAS;
	return uv;
}
float LTC_ClippedSphereFormFactor( const in vec3 f ) {
	float l = length( f );
	return max( ( l * l + f.z ) / ( l + 1.0 ), 0.0 );
}
vec3 LTC_EdgeVectorFormFactor( const in vec3 v1, const in vec3 v2 ) {
	float x = dot( v1, v2 );
	float y = abs( x );
	float a = 0.8543985 + ( 0.4965155 + 0.0145206 * y ) * y;
	float b = 3.4175940 + ( 4.1616724 + y ) * y;
	float v = a / b;
	float theta_sintheta = ( x > 0.0 ) ? v : 0.5 * inversesqrt( max( 1.0 - x * x, 1e-7 ) ) - v;
	return cross( v1, v2 ) * theta_sintheta;
}
vec3 LTC_Evaluate( const in vec3 N, const in vec3 V, const in vec3 P, const in mat3 mInv, const in vec3 rectCoords[ 4 ] ) {
	vec3 v1 = rectCoords[ 1 ] - rectCoords[ 0 ];
	vec3 v2 = rectCoords[ 3 ] - rectCoords[ 0 ];
	vec3 lightNormal = cross( v1, v2 );
	if( dot( lightNormal, P - rectCoords[ 0 ] ) < 0.0 ) return vec3( 0.0 );
	vec3 T1, T2;
	T1 = normalize( V - N * dot( V, N ) );
	T2 = - cross( N, T1 );
	mat3 mat = mInv * transposeMat3( mat3( T1, T2, N ) );
	vec3 coords[ 4 ];
	coords[ 0 ] = mat * ( rectCoords[ 0 ] - P );
	coords[ 1 ] = mat * ( rectCoords[ 1 ] - P );
	coords[ 2 ] = mat * ( rectCoords[ 2 ] - P );
	coords[ 3 ] = mat * ( rectCoords[ 3 ] - P );
	coords[ 0 ] = normalize( coords[ 0 ] );
	coords[ 1 ] = normalize( coords[ 1 ] );
	coords[ 2 ] = normalize( coords[ 2 ] );
	coords[ 3 ] = normalize( coords[ 3 ] );
	vec3 vectorFormFactor = vec3( 0.0 );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 0 ], coords[ 1 ] );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 1 ], coords[ 2 ] );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 2 ], coords[ 3 ] );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 3 ], coords[ 0 ] );
	float result = LTC_ClippedSphereFormFactor( vectorFormFactor );
	return vec3( result );
}
#if defined( USE_SHEEN )
float D_Charlie( float roughness, float dotNH ) {
	float alpha = pow2( roughness );
	float invAlpha = 1.0 / alpha;
	float cos2h = dotNH * dotNH;
	float sin2h = max( 1.0 - cos2h, 0.0078125 );
	return ( 2.0 + invAlpha ) * pow( sin2h, invAlpha * 0.5 ) / ( 2.0 * PI );
}
float V_Neubelt( float dotNV, float dotNL ) {
	return saturate( 1.0 / ( 4.0 * ( dotNL + dotNV - dotNL * dotNV ) ) );
}
vec3 BRDF_Sheen( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, vec3 sheenColor, const in float sheenRoughness ) {
	vec3 halfDir = normalize( lightDir + viewDir );
	float dotNL = saturate( dot( normal, lightDir ) );
	float dotNV = saturate( dot( normal, viewDir ) );
	float dotNH = saturate( dot( normal, halfDir ) );
	float D = D_Charlie( sheenRoughness, dotNH );
	float V = V_Neubelt( dotNV, dotNL );
	return sheenColor * ( D * V );
}
#endif
float IBLSheenBRDF( const in vec3 normal, const in vec3 viewDir, const in float roughness ) {
	float dotNV = saturate( dot( normal, viewDir ) );
	float r2 = roughness * roughness;
	float a = roughness < 0.25 ? -339.2 * r2 + 161.4 * roughness - 25.9 : -8.48 * r2 + 14.3 * roughness - 9.95;
	float b = roughness < 0.25 ? 44.0 * r2 - 23.7 * roughness + 3.26 : 1.97 * r2 - 3.27 * roughness + 0.72;
	float DG = exp( a * dotNV + b ) + ( roughness < 0.25 ? 0.0 : 0.1 * ( roughness - 0.25 ) );
	return saturate( DG * RECIPROCAL_PI );
}
vec2 DFGApprox( const in vec3 normal, const in vec3 viewDir, const in float roughness ) {
	float dotNV = saturate( dot( normal, viewDir ) );
	const vec4 c0 = vec4( - 1, - 0.0275, - 0.572, 0.022 );
	const vec4 c1 = vec4( 1, 0.0425, 1.04, - 0.04 );
	vec4 r = roughness * c0 + c1;
	float a004 = min( r.x * r.x, exp2( - 9.28 * dotNV ) ) * r.x + r.y;
	vec2 fab = vec2( - 1.04, 1.04 ) * a004 + r.zw;
	return fab;
}
vec3 EnvironmentBRDF( const in vec3 normal, const in vec3 viewDir, const in vec3 specularColor, const in float specularF90, const in float roughness ) {
	vec2 fab = DFGApprox( normal, viewDir, roughness );
	return specularColor * fab.x + specularF90 * fab.y;
}
#ifdef USE_IRIDESCENCE
void computeMultiscatteringIridescence( const in vec3 normal, const in vec3 viewDir, const in vec3 specularColor, const in float specularF90, const in float iridescence, const in vec3 iridescenceF0, const in float roughness, inout vec3 singleScatter, inout vec3 multiScatter ) {
#else
void computeMultiscattering( const in vec3 normal, const in vec3 viewDir, const in vec3 specularColor, const in float specularF90, const in float roughness, inout vec3 singleScatter, inout vec3 multiScatter ) {
#endif
	vec2 fab = DFGApprox( normal, viewDir, roughness );
	#ifdef USE_IRIDESCENCE
		vec3 Fr = mix( specularColor, iridescenceF0, iridescence );
	#else
		vec3 Fr = specularColor;
	#endif
	vec3 FssEss = Fr * fab.x + specularF90 * fab.y;
	float Ess = fab.x + fab.y;
	float Ems = 1.0 - Ess;
	vec3 Favg = Fr + ( 1.0 - Fr ) * 0.047619;	vec3 Fms = FssEss * Favg / ( 1.0 - Ems * Favg );
	singleScatter += FssEss;
	multiScatter += Fms * Ems;
}
#if NUM_RECT_AREA_LIGHTS > 0
	void RE_Direct_RectArea_Physical( const in RectAreaLight rectAreaLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight ) {
		vec3 normal = geometryNormal;
		vec3 viewDir = geometryViewDir;
		vec3 position = geometryPosition;
		vec3 lightPos = rectAreaLight.position;
		vec3 halfWidth = rectAreaLight.halfWidth;
		vec3 halfHeight = rectAreaLight.halfHeight;
		vec3 lightColor = rectAreaLight.color;
		float roughness = material.roughness;
		vec3 rectCoords[ 4 ];
		rectCoords[ 0 ] = lightPos + halfWidth - halfHeight;		rectCoords[ 1 ] = lightPos - halfWidth - halfHeight;
		rectCoords[ 2 ] = lightPos - halfWidth + halfHeight;
		rectCoords[ 3 ] = lightPos + halfWidth + halfHeight;
		vec2 uv = LTC_Uv( normal, viewDir, roughness );
		vec4 t1 = texture2D( ltc_1, uv );
		vec4 t2 = texture2D( ltc_2, uv );
		mat3 mInv = mat3(
			vec3( t1.x, 0, t1.y ),
			vec3(    0, 1,    0 ),
			vec3( t1.z, 0, t1.w )
		);
		vec3 fresnel = ( material.specularColor * t2.x + ( vec3( 1.0 ) - material.specularColor ) * t2.y );
		reflectedLight.directSpecular += lightColor * fresnel * LTC_Evaluate( normal, viewDir, position, mInv, rectCoords );
		reflectedLight.directDiffuse += lightColor * material.diffuseColor * LTC_Evaluate( normal, viewDir, position, mat3( 1.0 ), rectCoords );
	}
#endif
void RE_Direct_Physical( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight ) {
	float dotNL = saturate( dot( geometryNormal, directLight.direction ) );
	vec3 irradiance = dotNL * directLight.color;
	#ifdef USE_CLEARCOAT
		float dotNLcc = saturate( dot( geometryClearcoatNormal, directLight.direction ) );
		vec3 ccIrradiance = dotNLcc * directLight.color;
		clearcoatSpecularDirect += ccIrradiance * BRDF_GGX_Clearcoat( directLight.direction, geometryViewDir, geometryClearcoatNormal, material );
	#endif
	#ifdef USE_SHEEN
		sheenSpecularDirect += irradiance * BRDF_Sheen( directLight.direction, geometryViewDir, geometryNormal, material.sheenColor, material.sheenRoughness );
	#endif
	reflectedLight.directSpecular += irradiance * BRDF_GGX( directLight.direction, geometryViewDir, geometryNormal, material );
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectDiffuse_Physical( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectSpecular_Physical( const in vec3 radiance, const in vec3 irradiance, const in vec3 clearcoatRadiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight) {
	#ifdef USE_CLEARCOAT
		clearcoatSpecularIndirect += clearcoatRadiance * EnvironmentBRDF( geometryClearcoatNormal, geometryViewDir, material.clearcoatF0, material.clearcoatF90, material.clearcoatRoughness );
	#endif
	#ifdef USE_SHEEN
		sheenSpecularIndirect += irradiance * material.sheenColor * IBLSheenBRDF( geometryNormal, geometryViewDir, material.sheenRoughness );
	#endif
	vec3 singleScattering = vec3( 0.0 );
	vec3 multiScattering = vec3( 0.0 );
	vec3 cosineWeightedIrradiance = irradiance * RECIPROCAL_PI;
	#ifdef USE_IRIDESCENCE
		computeMultiscatteringIridescence( geometryNormal, geometryViewDir, material.specularColor, material.specularF90, material.iridescence, material.iridescenceFresnel, material.roughness, singleScattering, multiScattering );
	#else
		computeMultiscattering( geometryNormal, geometryViewDir, material.specularColor, material.specularF90, material.roughness, singleScattering, multiScattering );
	#endif
	vec3 totalScattering = singleScattering + multiScattering;
	vec3 diffuse = material.diffuseColor * ( 1.0 - max( max( totalScattering.r, totalScattering.g ), totalScattering.b ) );
	reflectedLight.indirectSpecular += radiance * singleScattering;
	reflectedLight.indirectSpecular += multiScattering * cosineWeightedIrradiance;
	reflectedLight.indirectDiffuse += diffuse * cosineWeightedIrradiance;
}
#define RE_Direct				RE_Direct_Physical
#define RE_Direct_RectArea		RE_Direct_RectArea_Physical
#define RE_IndirectDiffuse		RE_IndirectDiffuse_Physical
#define RE_IndirectSpecular		RE_IndirectSpecular_Physical
float computeSpecularOcclusion( const in float dotNV, const in float ambientOcclusion, const in float roughness ) {
	return saturate( pow( dotNV + ambientOcclusion, exp2( - 16.0 * roughness - 1.0 ) ) - 1.0 + ambientOcclusion );
}`,O0=`
vec3 geometryPosition = - vViewPosition;
vec3 geometryNormal = normal;
vec3 geometryViewDir = ( isOrthographic ) ? vec3( 0, 0, 1 ) : normalize( vViewPosition );
vec3 geometryClearcoatNormal = vec3( 0.0 );
#ifdef USE_CLEARCOAT
	geometryClearcoatNormal = clearcoatNormal;
#endif
#ifdef USE_IRIDESCENCE
	float dotNVi = saturate( dot( normal, geometryViewDir ) );
	if ( material.iridescenceThickness == 0.0 ) {
		material.iridescence = 0.0;
	} else {
		material.iridescence = saturate( material.iridescence );
	}
	if ( material.iridescence > 0.0 ) {
		material.iridescenceFresnel = evalIridescence( 1.0, material.iridescenceIOR, dotNVi, material.iridescenceThickness, material.specularColor );
		material.iridescenceF0 = Schlick_to_F0( material.iridescenceFresnel, 1.0, dotNVi );
	}
#endif
IncidentLight directLight;
#if ( NUM_POINT_LIGHTS > 0 ) && defined( RE_Direct )
	PointLight pointLight;
	#if defined( USE_SHADOWMAP ) && NUM_POINT_LIGHT_SHADOWS > 0
	PointLightShadow pointLightShadow;
	#endif
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_POINT_LIGHTS; i ++ ) {
		pointLight = pointLights[ i ];
		getPointLightInfo( pointLight, geometryPosition, directLight );
		#if defined( USE_SHADOWMAP ) && ( UNROLLED_LOOP_INDEX < NUM_POINT_LIGHT_SHADOWS )
		pointLightShadow = pointLightShadows[ i ];
		directLight.color *= ( directLight.visible && receiveShadow ) ? getPointShadow( pointShadowMap[ i ], pointLightShadow.shadowMapSize, pointLightShadow.shadowIntensity, pointLightShadow.shadowBias, pointLightShadow.shadowRadius, vPointShadowCoord[ i ], pointLightShadow.shadowCameraNear, pointLightShadow.shadowCameraFar ) : 1.0;
		#endif
		RE_Direct( directLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if ( NUM_SPOT_LIGHTS > 0 ) && defined( RE_Direct )
	SpotLight spotLight;
	vec4 spotColor;
	vec3 spotLightCoord;
	bool inSpotLightMap;
	#if defined( USE_SHADOWMAP ) && NUM_SPOT_LIGHT_SHADOWS > 0
	SpotLightShadow spotLightShadow;
	#endif
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_SPOT_LIGHTS; i ++ ) {
		spotLight = spotLights[ i ];
		getSpotLightInfo( spotLight, geometryPosition, directLight );
		#if ( UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS_WITH_MAPS )
		#define SPOT_LIGHT_MAP_INDEX UNROLLED_LOOP_INDEX
		#elif ( UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS )
		#define SPOT_LIGHT_MAP_INDEX NUM_SPOT_LIGHT_MAPS
		#else
		#define SPOT_LIGHT_MAP_INDEX ( UNROLLED_LOOP_INDEX - NUM_SPOT_LIGHT_SHADOWS + NUM_SPOT_LIGHT_SHADOWS_WITH_MAPS )
		#endif
		#if ( SPOT_LIGHT_MAP_INDEX < NUM_SPOT_LIGHT_MAPS )
			spotLightCoord = vSpotLightCoord[ i ].xyz / vSpotLightCoord[ i ].w;
			inSpotLightMap = all( lessThan( abs( spotLightCoord * 2. - 1. ), vec3( 1.0 ) ) );
			spotColor = texture2D( spotLightMap[ SPOT_LIGHT_MAP_INDEX ], spotLightCoord.xy );
			directLight.color = inSpotLightMap ? directLight.color * spotColor.rgb : directLight.color;
		#endif
		#undef SPOT_LIGHT_MAP_INDEX
		#if defined( USE_SHADOWMAP ) && ( UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS )
		spotLightShadow = spotLightShadows[ i ];
		directLight.color *= ( directLight.visible && receiveShadow ) ? getShadow( spotShadowMap[ i ], spotLightShadow.shadowMapSize, spotLightShadow.shadowIntensity, spotLightShadow.shadowBias, spotLightShadow.shadowRadius, vSpotLightCoord[ i ] ) : 1.0;
		#endif
		RE_Direct( directLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if ( NUM_DIR_LIGHTS > 0 ) && defined( RE_Direct )
	DirectionalLight directionalLight;
	#if defined( USE_SHADOWMAP ) && NUM_DIR_LIGHT_SHADOWS > 0
	DirectionalLightShadow directionalLightShadow;
	#endif
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_DIR_LIGHTS; i ++ ) {
		directionalLight = directionalLights[ i ];
		getDirectionalLightInfo( directionalLight, directLight );
		#if defined( USE_SHADOWMAP ) && ( UNROLLED_LOOP_INDEX < NUM_DIR_LIGHT_SHADOWS )
		directionalLightShadow = directionalLightShadows[ i ];
		directLight.color *= ( directLight.visible && receiveShadow ) ? getShadow( directionalShadowMap[ i ], directionalLightShadow.shadowMapSize, directionalLightShadow.shadowIntensity, directionalLightShadow.shadowBias, directionalLightShadow.shadowRadius, vDirectionalShadowCoord[ i ] ) : 1.0;
		#endif
		RE_Direct( directLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if ( NUM_RECT_AREA_LIGHTS > 0 ) && defined( RE_Direct_RectArea )
	RectAreaLight rectAreaLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_RECT_AREA_LIGHTS; i ++ ) {
		rectAreaLight = rectAreaLights[ i ];
		RE_Direct_RectArea( rectAreaLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if defined( RE_IndirectDiffuse )
	vec3 iblIrradiance = vec3( 0.0 );
	vec3 irradiance = getAmbientLightIrradiance( ambientLightColor );
	#if defined( USE_LIGHT_PROBES )
		irradiance += getLightProbeIrradiance( lightProbe, geometryNormal );
	#endif
	#if ( NUM_HEMI_LIGHTS > 0 )
		#pragma unroll_loop_start
		for ( int i = 0; i < NUM_HEMI_LIGHTS; i ++ ) {
			irradiance += getHemisphereLightIrradiance( hemisphereLights[ i ], geometryNormal );
		}
		#pragma unroll_loop_end
	#endif
#endif
#if defined( RE_IndirectSpecular )
	vec3 radiance = vec3( 0.0 );
	vec3 clearcoatRadiance = vec3( 0.0 );
#endif`,F0=`#if defined( RE_IndirectDiffuse )
	#ifdef USE_LIGHTMAP
		vec4 lightMapTexel = texture2D( lightMap, vLightMapUv );
		vec3 lightMapIrradiance = lightMapTexel.rgb * lightMapIntensity;
		irradiance += lightMapIrradiance;
	#endif
	#if defined( USE_ENVMAP ) && defined( STANDARD ) && defined( ENVMAP_TYPE_CUBE_UV )
		iblIrradiance += getIBLIrradiance( geometryNormal );
	#endif
#endif
#if defined( USE_ENVMAP ) && defined( RE_IndirectSpecular )
	#ifdef USE_ANISOTROPY
		radiance += getIBLAnisotropyRadiance( geometryViewDir, geometryNormal, material.roughness, material.anisotropyB, material.anisotropy );
	#else
		radiance += getIBLRadiance( geometryViewDir, geometryNormal, material.roughness );
	#endif
	#ifdef USE_CLEARCOAT
		clearcoatRadiance += getIBLRadiance( geometryViewDir, geometryClearcoatNormal, material.clearcoatRoughness );
	#endif
#endif`,B0=`#if defined( RE_IndirectDiffuse )
	RE_IndirectDiffuse( irradiance, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
#endif
#if defined( RE_IndirectSpecular )
	RE_IndirectSpecular( radiance, iblIrradiance, clearcoatRadiance, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
#endif`,k0=`#if defined( USE_LOGDEPTHBUF )
	gl_FragDepth = vIsPerspective == 0.0 ? gl_FragCoord.z : log2( vFragDepth ) * logDepthBufFC * 0.5;
#endif`,z0=`#if defined( USE_LOGDEPTHBUF )
	uniform float logDepthBufFC;
	varying float vFragDepth;
	varying float vIsPerspective;
#endif`,V0=`#ifdef USE_LOGDEPTHBUF
	varying float vFragDepth;
	varying float vIsPerspective;
#endif`,H0=`#ifdef USE_LOGDEPTHBUF
	vFragDepth = 1.0 + gl_Position.w;
	vIsPerspective = float( isPerspectiveMatrix( projectionMatrix ) );
#endif`,G0=`#ifdef USE_MAP
	vec4 sampledDiffuseColor = texture2D( map, vMapUv );
	#ifdef DECODE_VIDEO_TEXTURE
		sampledDiffuseColor = sRGBTransferEOTF( sampledDiffuseColor );
	#endif
	diffuseColor *= sampledDiffuseColor;
#endif`,W0=`#ifdef USE_MAP
	uniform sampler2D map;
#endif`,X0=`#if defined( USE_MAP ) || defined( USE_ALPHAMAP )
	#if defined( USE_POINTS_UV )
		vec2 uv = vUv;
	#else
		vec2 uv = ( uvTransform * vec3( gl_PointCoord.x, 1.0 - gl_PointCoord.y, 1 ) ).xy;
	#endif
#endif
#ifdef USE_MAP
	diffuseColor *= texture2D( map, uv );
#endif
#ifdef USE_ALPHAMAP
	diffuseColor.a *= texture2D( alphaMap, uv ).g;
#endif`,Y0=`#if defined( USE_POINTS_UV )
	varying vec2 vUv;
#else
	#if defined( USE_MAP ) || defined( USE_ALPHAMAP )
		uniform mat3 uvTransform;
	#endif
#endif
#ifdef USE_MAP
	uniform sampler2D map;
#endif
#ifdef USE_ALPHAMAP
	uniform sampler2D alphaMap;
#endif`,q0=`float metalnessFactor = metalness;
#ifdef USE_METALNESSMAP
	vec4 texelMetalness = texture2D( metalnessMap, vMetalnessMapUv );
	metalnessFactor *= texelMetalness.b;
#endif`,$0=`#ifdef USE_METALNESSMAP
	uniform sampler2D metalnessMap;
#endif`,Z0=`#ifdef USE_INSTANCING_MORPH
	float morphTargetInfluences[ MORPHTARGETS_COUNT ];
	float morphTargetBaseInfluence = texelFetch( morphTexture, ivec2( 0, gl_InstanceID ), 0 ).r;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		morphTargetInfluences[i] =  texelFetch( morphTexture, ivec2( i + 1, gl_InstanceID ), 0 ).r;
	}
#endif`,J0=`#if defined( USE_MORPHCOLORS )
	vColor *= morphTargetBaseInfluence;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		#if defined( USE_COLOR_ALPHA )
			if ( morphTargetInfluences[ i ] != 0.0 ) vColor += getMorph( gl_VertexID, i, 2 ) * morphTargetInfluences[ i ];
		#elif defined( USE_COLOR )
			if ( morphTargetInfluences[ i ] != 0.0 ) vColor += getMorph( gl_VertexID, i, 2 ).rgb * morphTargetInfluences[ i ];
		#endif
	}
#endif`,K0=`#ifdef USE_MORPHNORMALS
	objectNormal *= morphTargetBaseInfluence;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		if ( morphTargetInfluences[ i ] != 0.0 ) objectNormal += getMorph( gl_VertexID, i, 1 ).xyz * morphTargetInfluences[ i ];
	}
#endif`,j0=`#ifdef USE_MORPHTARGETS
	#ifndef USE_INSTANCING_MORPH
		uniform float morphTargetBaseInfluence;
		uniform float morphTargetInfluences[ MORPHTARGETS_COUNT ];
	#endif
	uniform sampler2DArray morphTargetsTexture;
	uniform ivec2 morphTargetsTextureSize;
	vec4 getMorph( const in int vertexIndex, const in int morphTargetIndex, const in int offset ) {
		int texelIndex = vertexIndex * MORPHTARGETS_TEXTURE_STRIDE + offset;
		int y = texelIndex / morphTargetsTextureSize.x;
		int x = texelIndex - y * morphTargetsTextureSize.x;
		ivec3 morphUV = ivec3( x, y, morphTargetIndex );
		return texelFetch( morphTargetsTexture, morphUV, 0 );
	}
#endif`,Q0=`#ifdef USE_MORPHTARGETS
	transformed *= morphTargetBaseInfluence;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		if ( morphTargetInfluences[ i ] != 0.0 ) transformed += getMorph( gl_VertexID, i, 0 ).xyz * morphTargetInfluences[ i ];
	}
#endif`,t_=`float faceDirection = gl_FrontFacing ? 1.0 : - 1.0;
#ifdef FLAT_SHADED
	vec3 fdx = dFdx( vViewPosition );
	vec3 fdy = dFdy( vViewPosition );
	vec3 normal = normalize( cross( fdx, fdy ) );
#else
	vec3 normal = normalize( vNormal );
	#ifdef DOUBLE_SIDED
		normal *= faceDirection;
	#endif
#endif
#if defined( USE_NORMALMAP_TANGENTSPACE ) || defined( USE_CLEARCOAT_NORMALMAP ) || defined( USE_ANISOTROPY )
	#ifdef USE_TANGENT
		mat3 tbn = mat3( normalize( vTangent ), normalize( vBitangent ), normal );
	#else
		mat3 tbn = getTangentFrame( - vViewPosition, normal,
		#if defined( USE_NORMALMAP )
			vNormalMapUv
		#elif defined( USE_CLEARCOAT_NORMALMAP )
			vClearcoatNormalMapUv
		#else
			vUv
		#endif
		);
	#endif
	#if defined( DOUBLE_SIDED ) && ! defined( FLAT_SHADED )
		tbn[0] *= faceDirection;
		tbn[1] *= faceDirection;
	#endif
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	#ifdef USE_TANGENT
		mat3 tbn2 = mat3( normalize( vTangent ), normalize( vBitangent ), normal );
	#else
		mat3 tbn2 = getTangentFrame( - vViewPosition, normal, vClearcoatNormalMapUv );
	#endif
	#if defined( DOUBLE_SIDED ) && ! defined( FLAT_SHADED )
		tbn2[0] *= faceDirection;
		tbn2[1] *= faceDirection;
	#endif
#endif
vec3 nonPerturbedNormal = normal;`,e_=`#ifdef USE_NORMALMAP_OBJECTSPACE
	normal = texture2D( normalMap, vNormalMapUv ).xyz * 2.0 - 1.0;
	#ifdef FLIP_SIDED
		normal = - normal;
	#endif
	#ifdef DOUBLE_SIDED
		normal = normal * faceDirection;
	#endif
	normal = normalize( normalMatrix * normal );
#elif defined( USE_NORMALMAP_TANGENTSPACE )
	vec3 mapN = texture2D( normalMap, vNormalMapUv ).xyz * 2.0 - 1.0;
	mapN.xy *= normalScale;
	normal = normalize( tbn * mapN );
#elif defined( USE_BUMPMAP )
	normal = perturbNormalArb( - vViewPosition, normal, dHdxy_fwd(), faceDirection );
#endif`,n_=`#ifndef FLAT_SHADED
	varying vec3 vNormal;
	#ifdef USE_TANGENT
		varying vec3 vTangent;
		varying vec3 vBitangent;
	#endif
#endif`,i_=`#ifndef FLAT_SHADED
	varying vec3 vNormal;
	#ifdef USE_TANGENT
		varying vec3 vTangent;
		varying vec3 vBitangent;
	#endif
#endif`,s_=`#ifndef FLAT_SHADED
	vNormal = normalize( transformedNormal );
	#ifdef USE_TANGENT
		vTangent = normalize( transformedTangent );
		vBitangent = normalize( cross( vNormal, vTangent ) * tangent.w );
	#endif
#endif`,r_=`#ifdef USE_NORMALMAP
	uniform sampler2D normalMap;
	uniform vec2 normalScale;
#endif
#ifdef USE_NORMALMAP_OBJECTSPACE
	uniform mat3 normalMatrix;
#endif
#if ! defined ( USE_TANGENT ) && ( defined ( USE_NORMALMAP_TANGENTSPACE ) || defined ( USE_CLEARCOAT_NORMALMAP ) || defined( USE_ANISOTROPY ) )
	mat3 getTangentFrame( vec3 eye_pos, vec3 surf_norm, vec2 uv ) {
		vec3 q0 = dFdx( eye_pos.xyz );
		vec3 q1 = dFdy( eye_pos.xyz );
		vec2 st0 = dFdx( uv.st );
		vec2 st1 = dFdy( uv.st );
		vec3 N = surf_norm;
		vec3 q1perp = cross( q1, N );
		vec3 q0perp = cross( N, q0 );
		vec3 T = q1perp * st0.x + q0perp * st1.x;
		vec3 B = q1perp * st0.y + q0perp * st1.y;
		float det = max( dot( T, T ), dot( B, B ) );
		float scale = ( det == 0.0 ) ? 0.0 : inversesqrt( det );
		return mat3( T * scale, B * scale, N );
	}
#endif`,o_=`#ifdef USE_CLEARCOAT
	vec3 clearcoatNormal = nonPerturbedNormal;
#endif`,a_=`#ifdef USE_CLEARCOAT_NORMALMAP
	vec3 clearcoatMapN = texture2D( clearcoatNormalMap, vClearcoatNormalMapUv ).xyz * 2.0 - 1.0;
	clearcoatMapN.xy *= clearcoatNormalScale;
	clearcoatNormal = normalize( tbn2 * clearcoatMapN );
#endif`,l_=`#ifdef USE_CLEARCOATMAP
	uniform sampler2D clearcoatMap;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	uniform sampler2D clearcoatNormalMap;
	uniform vec2 clearcoatNormalScale;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	uniform sampler2D clearcoatRoughnessMap;
#endif`,c_=`#ifdef USE_IRIDESCENCEMAP
	uniform sampler2D iridescenceMap;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	uniform sampler2D iridescenceThicknessMap;
#endif`,h_=`#ifdef OPAQUE
diffuseColor.a = 1.0;
#endif
#ifdef USE_TRANSMISSION
diffuseColor.a *= material.transmissionAlpha;
#endif
gl_FragColor = vec4( outgoingLight, diffuseColor.a );`,u_=`vec3 packNormalToRGB( const in vec3 normal ) {
	return normalize( normal ) * 0.5 + 0.5;
}
vec3 unpackRGBToNormal( const in vec3 rgb ) {
	return 2.0 * rgb.xyz - 1.0;
}
const float PackUpscale = 256. / 255.;const float UnpackDownscale = 255. / 256.;const float ShiftRight8 = 1. / 256.;
const float Inv255 = 1. / 255.;
const vec4 PackFactors = vec4( 1.0, 256.0, 256.0 * 256.0, 256.0 * 256.0 * 256.0 );
const vec2 UnpackFactors2 = vec2( UnpackDownscale, 1.0 / PackFactors.g );
const vec3 UnpackFactors3 = vec3( UnpackDownscale / PackFactors.rg, 1.0 / PackFactors.b );
const vec4 UnpackFactors4 = vec4( UnpackDownscale / PackFactors.rgb, 1.0 / PackFactors.a );
vec4 packDepthToRGBA( const in float v ) {
	if( v <= 0.0 )
		return vec4( 0., 0., 0., 0. );
	if( v >= 1.0 )
		return vec4( 1., 1., 1., 1. );
	float vuf;
	float af = modf( v * PackFactors.a, vuf );
	float bf = modf( vuf * ShiftRight8, vuf );
	float gf = modf( vuf * ShiftRight8, vuf );
	return vec4( vuf * Inv255, gf * PackUpscale, bf * PackUpscale, af );
}
vec3 packDepthToRGB( const in float v ) {
	if( v <= 0.0 )
		return vec3( 0., 0., 0. );
	if( v >= 1.0 )
		return vec3( 1., 1., 1. );
	float vuf;
	float bf = modf( v * PackFactors.b, vuf );
	float gf = modf( vuf * ShiftRight8, vuf );
	return vec3( vuf * Inv255, gf * PackUpscale, bf );
}
vec2 packDepthToRG( const in float v ) {
	if( v <= 0.0 )
		return vec2( 0., 0. );
	if( v >= 1.0 )
		return vec2( 1., 1. );
	float vuf;
	float gf = modf( v * 256., vuf );
	return vec2( vuf * Inv255, gf );
}
float unpackRGBAToDepth( const in vec4 v ) {
	return dot( v, UnpackFactors4 );
}
float unpackRGBToDepth( const in vec3 v ) {
	return dot( v, UnpackFactors3 );
}
float unpackRGToDepth( const in vec2 v ) {
	return v.r * UnpackFactors2.r + v.g * UnpackFactors2.g;
}
vec4 pack2HalfToRGBA( const in vec2 v ) {
	vec4 r = vec4( v.x, fract( v.x * 255.0 ), v.y, fract( v.y * 255.0 ) );
	return vec4( r.x - r.y / 255.0, r.y, r.z - r.w / 255.0, r.w );
}
vec2 unpackRGBATo2Half( const in vec4 v ) {
	return vec2( v.x + ( v.y / 255.0 ), v.z + ( v.w / 255.0 ) );
}
float viewZToOrthographicDepth( const in float viewZ, const in float near, const in float far ) {
	return ( viewZ + near ) / ( near - far );
}
float orthographicDepthToViewZ( const in float depth, const in float near, const in float far ) {
	return depth * ( near - far ) - near;
}
float viewZToPerspectiveDepth( const in float viewZ, const in float near, const in float far ) {
	return ( ( near + viewZ ) * far ) / ( ( far - near ) * viewZ );
}
float perspectiveDepthToViewZ( const in float depth, const in float near, const in float far ) {
	return ( near * far ) / ( ( far - near ) * depth - far );
}`,f_=`#ifdef PREMULTIPLIED_ALPHA
	gl_FragColor.rgb *= gl_FragColor.a;
#endif`,d_=`vec4 mvPosition = vec4( transformed, 1.0 );
#ifdef USE_BATCHING
	mvPosition = batchingMatrix * mvPosition;
#endif
#ifdef USE_INSTANCING
	mvPosition = instanceMatrix * mvPosition;
#endif
mvPosition = modelViewMatrix * mvPosition;
gl_Position = projectionMatrix * mvPosition;`,p_=`#ifdef DITHERING
	gl_FragColor.rgb = dithering( gl_FragColor.rgb );
#endif`,m_=`#ifdef DITHERING
	vec3 dithering( vec3 color ) {
		float grid_position = rand( gl_FragCoord.xy );
		vec3 dither_shift_RGB = vec3( 0.25 / 255.0, -0.25 / 255.0, 0.25 / 255.0 );
		dither_shift_RGB = mix( 2.0 * dither_shift_RGB, -2.0 * dither_shift_RGB, grid_position );
		return color + dither_shift_RGB;
	}
#endif`,g_=`float roughnessFactor = roughness;
#ifdef USE_ROUGHNESSMAP
	vec4 texelRoughness = texture2D( roughnessMap, vRoughnessMapUv );
	roughnessFactor *= texelRoughness.g;
#endif`,__=`#ifdef USE_ROUGHNESSMAP
	uniform sampler2D roughnessMap;
#endif`,x_=`#if NUM_SPOT_LIGHT_COORDS > 0
	varying vec4 vSpotLightCoord[ NUM_SPOT_LIGHT_COORDS ];
#endif
#if NUM_SPOT_LIGHT_MAPS > 0
	uniform sampler2D spotLightMap[ NUM_SPOT_LIGHT_MAPS ];
#endif
#ifdef USE_SHADOWMAP
	#if NUM_DIR_LIGHT_SHADOWS > 0
		uniform sampler2D directionalShadowMap[ NUM_DIR_LIGHT_SHADOWS ];
		varying vec4 vDirectionalShadowCoord[ NUM_DIR_LIGHT_SHADOWS ];
		struct DirectionalLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform DirectionalLightShadow directionalLightShadows[ NUM_DIR_LIGHT_SHADOWS ];
	#endif
	#if NUM_SPOT_LIGHT_SHADOWS > 0
		uniform sampler2D spotShadowMap[ NUM_SPOT_LIGHT_SHADOWS ];
		struct SpotLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform SpotLightShadow spotLightShadows[ NUM_SPOT_LIGHT_SHADOWS ];
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
		uniform sampler2D pointShadowMap[ NUM_POINT_LIGHT_SHADOWS ];
		varying vec4 vPointShadowCoord[ NUM_POINT_LIGHT_SHADOWS ];
		struct PointLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
			float shadowCameraNear;
			float shadowCameraFar;
		};
		uniform PointLightShadow pointLightShadows[ NUM_POINT_LIGHT_SHADOWS ];
	#endif
	float texture2DCompare( sampler2D depths, vec2 uv, float compare ) {
		return step( compare, unpackRGBAToDepth( texture2D( depths, uv ) ) );
	}
	vec2 texture2DDistribution( sampler2D shadow, vec2 uv ) {
		return unpackRGBATo2Half( texture2D( shadow, uv ) );
	}
	float VSMShadow (sampler2D shadow, vec2 uv, float compare ){
		float occlusion = 1.0;
		vec2 distribution = texture2DDistribution( shadow, uv );
		float hard_shadow = step( compare , distribution.x );
		if (hard_shadow != 1.0 ) {
			float distance = compare - distribution.x ;
			float variance = max( 0.00000, distribution.y * distribution.y );
			float softness_probability = variance / (variance + distance * distance );			softness_probability = clamp( ( softness_probability - 0.3 ) / ( 0.95 - 0.3 ), 0.0, 1.0 );			occlusion = clamp( max( hard_shadow, softness_probability ), 0.0, 1.0 );
		}
		return occlusion;
	}
	float getShadow( sampler2D shadowMap, vec2 shadowMapSize, float shadowIntensity, float shadowBias, float shadowRadius, vec4 shadowCoord ) {
		float shadow = 1.0;
		shadowCoord.xyz /= shadowCoord.w;
		shadowCoord.z += shadowBias;
		bool inFrustum = shadowCoord.x >= 0.0 && shadowCoord.x <= 1.0 && shadowCoord.y >= 0.0 && shadowCoord.y <= 1.0;
		bool frustumTest = inFrustum && shadowCoord.z <= 1.0;
		if ( frustumTest ) {
		#if defined( SHADOWMAP_TYPE_PCF )
			vec2 texelSize = vec2( 1.0 ) / shadowMapSize;
			float dx0 = - texelSize.x * shadowRadius;
			float dy0 = - texelSize.y * shadowRadius;
			float dx1 = + texelSize.x * shadowRadius;
			float dy1 = + texelSize.y * shadowRadius;
			float dx2 = dx0 / 2.0;
			float dy2 = dy0 / 2.0;
			float dx3 = dx1 / 2.0;
			float dy3 = dy1 / 2.0;
			shadow = (
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx0, dy0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx1, dy0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx2, dy2 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy2 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx3, dy2 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx0, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx2, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy, shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx3, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx1, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx2, dy3 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy3 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx3, dy3 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx0, dy1 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy1 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx1, dy1 ), shadowCoord.z )
			) * ( 1.0 / 17.0 );
		#elif defined( SHADOWMAP_TYPE_PCF_SOFT )
			vec2 texelSize = vec2( 1.0 ) / shadowMapSize;
			float dx = texelSize.x;
			float dy = texelSize.y;
			vec2 uv = shadowCoord.xy;
			vec2 f = fract( uv * shadowMapSize + 0.5 );
			uv -= f * texelSize;
			shadow = (
				texture2DCompare( shadowMap, uv, shadowCoord.z ) +
				texture2DCompare( shadowMap, uv + vec2( dx, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, uv + vec2( 0.0, dy ), shadowCoord.z ) +
				texture2DCompare( shadowMap, uv + texelSize, shadowCoord.z ) +
				mix( texture2DCompare( shadowMap, uv + vec2( -dx, 0.0 ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, 0.0 ), shadowCoord.z ),
					 f.x ) +
				mix( texture2DCompare( shadowMap, uv + vec2( -dx, dy ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, dy ), shadowCoord.z ),
					 f.x ) +
				mix( texture2DCompare( shadowMap, uv + vec2( 0.0, -dy ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( 0.0, 2.0 * dy ), shadowCoord.z ),
					 f.y ) +
				mix( texture2DCompare( shadowMap, uv + vec2( dx, -dy ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( dx, 2.0 * dy ), shadowCoord.z ),
					 f.y ) +
				mix( mix( texture2DCompare( shadowMap, uv + vec2( -dx, -dy ), shadowCoord.z ),
						  texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, -dy ), shadowCoord.z ),
						  f.x ),
					 mix( texture2DCompare( shadowMap, uv + vec2( -dx, 2.0 * dy ), shadowCoord.z ),
						  texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, 2.0 * dy ), shadowCoord.z ),
						  f.x ),
					 f.y )
			) * ( 1.0 / 9.0 );
		#elif defined( SHADOWMAP_TYPE_VSM )
			shadow = VSMShadow( shadowMap, shadowCoord.xy, shadowCoord.z );
		#else
			shadow = texture2DCompare( shadowMap, shadowCoord.xy, shadowCoord.z );
		#endif
		}
		return mix( 1.0, shadow, shadowIntensity );
	}
	vec2 cubeToUV( vec3 v, float texelSizeY ) {
		vec3 absV = abs( v );
		float scaleToCube = 1.0 / max( absV.x, max( absV.y, absV.z ) );
		absV *= scaleToCube;
		v *= scaleToCube * ( 1.0 - 2.0 * texelSizeY );
		vec2 planar = v.xy;
		float almostATexel = 1.5 * texelSizeY;
		float almostOne = 1.0 - almostATexel;
		if ( absV.z >= almostOne ) {
			if ( v.z > 0.0 )
				planar.x = 4.0 - v.x;
		} else if ( absV.x >= almostOne ) {
			float signX = sign( v.x );
			planar.x = v.z * signX + 2.0 * signX;
		} else if ( absV.y >= almostOne ) {
			float signY = sign( v.y );
			planar.x = v.x + 2.0 * signY + 2.0;
			planar.y = v.z * signY - 2.0;
		}
		return vec2( 0.125, 0.25 ) * planar + vec2( 0.375, 0.75 );
	}
	float getPointShadow( sampler2D shadowMap, vec2 shadowMapSize, float shadowIntensity, float shadowBias, float shadowRadius, vec4 shadowCoord, float shadowCameraNear, float shadowCameraFar ) {
		float shadow = 1.0;
		vec3 lightToPosition = shadowCoord.xyz;
		
		float lightToPositionLength = length( lightToPosition );
		if ( lightToPositionLength - shadowCameraFar <= 0.0 && lightToPositionLength - shadowCameraNear >= 0.0 ) {
			float dp = ( lightToPositionLength - shadowCameraNear ) / ( shadowCameraFar - shadowCameraNear );			dp += shadowBias;
			vec3 bd3D = normalize( lightToPosition );
			vec2 texelSize = vec2( 1.0 ) / ( shadowMapSize * vec2( 4.0, 2.0 ) );
			#if defined( SHADOWMAP_TYPE_PCF ) || defined( SHADOWMAP_TYPE_PCF_SOFT ) || defined( SHADOWMAP_TYPE_VSM )
				vec2 offset = vec2( - 1, 1 ) * shadowRadius * texelSize.y;
				shadow = (
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xyy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yyy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xyx, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yyx, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xxy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yxy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xxx, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yxx, texelSize.y ), dp )
				) * ( 1.0 / 9.0 );
			#else
				shadow = texture2DCompare( shadowMap, cubeToUV( bd3D, texelSize.y ), dp );
			#endif
		}
		return mix( 1.0, shadow, shadowIntensity );
	}
#endif`,y_=`#if NUM_SPOT_LIGHT_COORDS > 0
	uniform mat4 spotLightMatrix[ NUM_SPOT_LIGHT_COORDS ];
	varying vec4 vSpotLightCoord[ NUM_SPOT_LIGHT_COORDS ];
#endif
#ifdef USE_SHADOWMAP
	#if NUM_DIR_LIGHT_SHADOWS > 0
		uniform mat4 directionalShadowMatrix[ NUM_DIR_LIGHT_SHADOWS ];
		varying vec4 vDirectionalShadowCoord[ NUM_DIR_LIGHT_SHADOWS ];
		struct DirectionalLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform DirectionalLightShadow directionalLightShadows[ NUM_DIR_LIGHT_SHADOWS ];
	#endif
	#if NUM_SPOT_LIGHT_SHADOWS > 0
		struct SpotLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform SpotLightShadow spotLightShadows[ NUM_SPOT_LIGHT_SHADOWS ];
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
		uniform mat4 pointShadowMatrix[ NUM_POINT_LIGHT_SHADOWS ];
		varying vec4 vPointShadowCoord[ NUM_POINT_LIGHT_SHADOWS ];
		struct PointLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
			float shadowCameraNear;
			float shadowCameraFar;
		};
		uniform PointLightShadow pointLightShadows[ NUM_POINT_LIGHT_SHADOWS ];
	#endif
#endif`,v_=`#if ( defined( USE_SHADOWMAP ) && ( NUM_DIR_LIGHT_SHADOWS > 0 || NUM_POINT_LIGHT_SHADOWS > 0 ) ) || ( NUM_SPOT_LIGHT_COORDS > 0 )
	vec3 shadowWorldNormal = inverseTransformDirection( transformedNormal, viewMatrix );
	vec4 shadowWorldPosition;
#endif
#if defined( USE_SHADOWMAP )
	#if NUM_DIR_LIGHT_SHADOWS > 0
		#pragma unroll_loop_start
		for ( int i = 0; i < NUM_DIR_LIGHT_SHADOWS; i ++ ) {
			shadowWorldPosition = worldPosition + vec4( shadowWorldNormal * directionalLightShadows[ i ].shadowNormalBias, 0 );
			vDirectionalShadowCoord[ i ] = directionalShadowMatrix[ i ] * shadowWorldPosition;
		}
		#pragma unroll_loop_end
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
		#pragma unroll_loop_start
		for ( int i = 0; i < NUM_POINT_LIGHT_SHADOWS; i ++ ) {
			shadowWorldPosition = worldPosition + vec4( shadowWorldNormal * pointLightShadows[ i ].shadowNormalBias, 0 );
			vPointShadowCoord[ i ] = pointShadowMatrix[ i ] * shadowWorldPosition;
		}
		#pragma unroll_loop_end
	#endif
#endif
#if NUM_SPOT_LIGHT_COORDS > 0
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_SPOT_LIGHT_COORDS; i ++ ) {
		shadowWorldPosition = worldPosition;
		#if ( defined( USE_SHADOWMAP ) && UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS )
			shadowWorldPosition.xyz += shadowWorldNormal * spotLightShadows[ i ].shadowNormalBias;
		#endif
		vSpotLightCoord[ i ] = spotLightMatrix[ i ] * shadowWorldPosition;
	}
	#pragma unroll_loop_end
#endif`,M_=`float getShadowMask() {
	float shadow = 1.0;
	#ifdef USE_SHADOWMAP
	#if NUM_DIR_LIGHT_SHADOWS > 0
	DirectionalLightShadow directionalLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_DIR_LIGHT_SHADOWS; i ++ ) {
		directionalLight = directionalLightShadows[ i ];
		shadow *= receiveShadow ? getShadow( directionalShadowMap[ i ], directionalLight.shadowMapSize, directionalLight.shadowIntensity, directionalLight.shadowBias, directionalLight.shadowRadius, vDirectionalShadowCoord[ i ] ) : 1.0;
	}
	#pragma unroll_loop_end
	#endif
	#if NUM_SPOT_LIGHT_SHADOWS > 0
	SpotLightShadow spotLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_SPOT_LIGHT_SHADOWS; i ++ ) {
		spotLight = spotLightShadows[ i ];
		shadow *= receiveShadow ? getShadow( spotShadowMap[ i ], spotLight.shadowMapSize, spotLight.shadowIntensity, spotLight.shadowBias, spotLight.shadowRadius, vSpotLightCoord[ i ] ) : 1.0;
	}
	#pragma unroll_loop_end
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
	PointLightShadow pointLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_POINT_LIGHT_SHADOWS; i ++ ) {
		pointLight = pointLightShadows[ i ];
		shadow *= receiveShadow ? getPointShadow( pointShadowMap[ i ], pointLight.shadowMapSize, pointLight.shadowIntensity, pointLight.shadowBias, pointLight.shadowRadius, vPointShadowCoord[ i ], pointLight.shadowCameraNear, pointLight.shadowCameraFar ) : 1.0;
	}
	#pragma unroll_loop_end
	#endif
	#endif
	return shadow;
}`,S_=`#ifdef USE_SKINNING
	mat4 boneMatX = getBoneMatrix( skinIndex.x );
	mat4 boneMatY = getBoneMatrix( skinIndex.y );
	mat4 boneMatZ = getBoneMatrix( skinIndex.z );
	mat4 boneMatW = getBoneMatrix( skinIndex.w );
#endif`,b_=`#ifdef USE_SKINNING
	uniform mat4 bindMatrix;
	uniform mat4 bindMatrixInverse;
	uniform highp sampler2D boneTexture;
	mat4 getBoneMatrix( const in float i ) {
		int size = textureSize( boneTexture, 0 ).x;
		int j = int( i ) * 4;
		int x = j % size;
		int y = j / size;
		vec4 v1 = texelFetch( boneTexture, ivec2( x, y ), 0 );
		vec4 v2 = texelFetch( boneTexture, ivec2( x + 1, y ), 0 );
		vec4 v3 = texelFetch( boneTexture, ivec2( x + 2, y ), 0 );
		vec4 v4 = texelFetch( boneTexture, ivec2( x + 3, y ), 0 );
		return mat4( v1, v2, v3, v4 );
	}
#endif`,w_=`#ifdef USE_SKINNING
	vec4 skinVertex = bindMatrix * vec4( transformed, 1.0 );
	vec4 skinned = vec4( 0.0 );
	skinned += boneMatX * skinVertex * skinWeight.x;
	skinned += boneMatY * skinVertex * skinWeight.y;
	skinned += boneMatZ * skinVertex * skinWeight.z;
	skinned += boneMatW * skinVertex * skinWeight.w;
	transformed = ( bindMatrixInverse * skinned ).xyz;
#endif`,E_=`#ifdef USE_SKINNING
	mat4 skinMatrix = mat4( 0.0 );
	skinMatrix += skinWeight.x * boneMatX;
	skinMatrix += skinWeight.y * boneMatY;
	skinMatrix += skinWeight.z * boneMatZ;
	skinMatrix += skinWeight.w * boneMatW;
	skinMatrix = bindMatrixInverse * skinMatrix * bindMatrix;
	objectNormal = vec4( skinMatrix * vec4( objectNormal, 0.0 ) ).xyz;
	#ifdef USE_TANGENT
		objectTangent = vec4( skinMatrix * vec4( objectTangent, 0.0 ) ).xyz;
	#endif
#endif`,T_=`float specularStrength;
#ifdef USE_SPECULARMAP
	vec4 texelSpecular = texture2D( specularMap, vSpecularMapUv );
	specularStrength = texelSpecular.r;
#else
	specularStrength = 1.0;
#endif`,A_=`#ifdef USE_SPECULARMAP
	uniform sampler2D specularMap;
#endif`,C_=`#if defined( TONE_MAPPING )
	gl_FragColor.rgb = toneMapping( gl_FragColor.rgb );
#endif`,R_=`#ifndef saturate
#define saturate( a ) clamp( a, 0.0, 1.0 )
#endif
uniform float toneMappingExposure;
vec3 LinearToneMapping( vec3 color ) {
	return saturate( toneMappingExposure * color );
}
vec3 ReinhardToneMapping( vec3 color ) {
	color *= toneMappingExposure;
	return saturate( color / ( vec3( 1.0 ) + color ) );
}
vec3 CineonToneMapping( vec3 color ) {
	color *= toneMappingExposure;
	color = max( vec3( 0.0 ), color - 0.004 );
	return pow( ( color * ( 6.2 * color + 0.5 ) ) / ( color * ( 6.2 * color + 1.7 ) + 0.06 ), vec3( 2.2 ) );
}
vec3 RRTAndODTFit( vec3 v ) {
	vec3 a = v * ( v + 0.0245786 ) - 0.000090537;
	vec3 b = v * ( 0.983729 * v + 0.4329510 ) + 0.238081;
	return a / b;
}
vec3 ACESFilmicToneMapping( vec3 color ) {
	const mat3 ACESInputMat = mat3(
		vec3( 0.59719, 0.07600, 0.02840 ),		vec3( 0.35458, 0.90834, 0.13383 ),
		vec3( 0.04823, 0.01566, 0.83777 )
	);
	const mat3 ACESOutputMat = mat3(
		vec3(  1.60475, -0.10208, -0.00327 ),		vec3( -0.53108,  1.10813, -0.07276 ),
		vec3( -0.07367, -0.00605,  1.07602 )
	);
	color *= toneMappingExposure / 0.6;
	color = ACESInputMat * color;
	color = RRTAndODTFit( color );
	color = ACESOutputMat * color;
	return saturate( color );
}
const mat3 LINEAR_REC2020_TO_LINEAR_SRGB = mat3(
	vec3( 1.6605, - 0.1246, - 0.0182 ),
	vec3( - 0.5876, 1.1329, - 0.1006 ),
	vec3( - 0.0728, - 0.0083, 1.1187 )
);
const mat3 LINEAR_SRGB_TO_LINEAR_REC2020 = mat3(
	vec3( 0.6274, 0.0691, 0.0164 ),
	vec3( 0.3293, 0.9195, 0.0880 ),
	vec3( 0.0433, 0.0113, 0.8956 )
);
vec3 agxDefaultContrastApprox( vec3 x ) {
	vec3 x2 = x * x;
	vec3 x4 = x2 * x2;
	return + 15.5 * x4 * x2
		- 40.14 * x4 * x
		+ 31.96 * x4
		- 6.868 * x2 * x
		+ 0.4298 * x2
		+ 0.1191 * x
		- 0.00232;
}
vec3 AgXToneMapping( vec3 color ) {
	const mat3 AgXInsetMatrix = mat3(
		vec3( 0.856627153315983, 0.137318972929847, 0.11189821299995 ),
		vec3( 0.0951212405381588, 0.761241990602591, 0.0767994186031903 ),
		vec3( 0.0482516061458583, 0.101439036467562, 0.811302368396859 )
	);
	const mat3 AgXOutsetMatrix = mat3(
		vec3( 1.1271005818144368, - 0.1413297634984383, - 0.14132976349843826 ),
		vec3( - 0.11060664309660323, 1.157823702216272, - 0.11060664309660294 ),
		vec3( - 0.016493938717834573, - 0.016493938717834257, 1.2519364065950405 )
	);
	const float AgxMinEv = - 12.47393;	const float AgxMaxEv = 4.026069;
	color *= toneMappingExposure;
	color = LINEAR_SRGB_TO_LINEAR_REC2020 * color;
	color = AgXInsetMatrix * color;
	color = max( color, 1e-10 );	color = log2( color );
	color = ( color - AgxMinEv ) / ( AgxMaxEv - AgxMinEv );
	color = clamp( color, 0.0, 1.0 );
	color = agxDefaultContrastApprox( color );
	color = AgXOutsetMatrix * color;
	color = pow( max( vec3( 0.0 ), color ), vec3( 2.2 ) );
	color = LINEAR_REC2020_TO_LINEAR_SRGB * color;
	color = clamp( color, 0.0, 1.0 );
	return color;
}
vec3 NeutralToneMapping( vec3 color ) {
	const float StartCompression = 0.8 - 0.04;
	const float Desaturation = 0.15;
	color *= toneMappingExposure;
	float x = min( color.r, min( color.g, color.b ) );
	float offset = x < 0.08 ? x - 6.25 * x * x : 0.04;
	color -= offset;
	float peak = max( color.r, max( color.g, color.b ) );
	if ( peak < StartCompression ) return color;
	float d = 1. - StartCompression;
	float newPeak = 1. - d * d / ( peak + d - StartCompression );
	color *= newPeak / peak;
	float g = 1. - 1. / ( Desaturation * ( peak - newPeak ) + 1. );
	return mix( color, vec3( newPeak ), g );
}
vec3 CustomToneMapping( vec3 color ) { return color; }`,P_=`#ifdef USE_TRANSMISSION
	material.transmission = transmission;
	material.transmissionAlpha = 1.0;
	material.thickness = thickness;
	material.attenuationDistance = attenuationDistance;
	material.attenuationColor = attenuationColor;
	#ifdef USE_TRANSMISSIONMAP
		material.transmission *= texture2D( transmissionMap, vTransmissionMapUv ).r;
	#endif
	#ifdef USE_THICKNESSMAP
		material.thickness *= texture2D( thicknessMap, vThicknessMapUv ).g;
	#endif
	vec3 pos = vWorldPosition;
	vec3 v = normalize( cameraPosition - pos );
	vec3 n = inverseTransformDirection( normal, viewMatrix );
	vec4 transmitted = getIBLVolumeRefraction(
		n, v, material.roughness, material.diffuseColor, material.specularColor, material.specularF90,
		pos, modelMatrix, viewMatrix, projectionMatrix, material.dispersion, material.ior, material.thickness,
		material.attenuationColor, material.attenuationDistance );
	material.transmissionAlpha = mix( material.transmissionAlpha, transmitted.a, material.transmission );
	totalDiffuse = mix( totalDiffuse, transmitted.rgb, material.transmission );
#endif`,I_=`#ifdef USE_TRANSMISSION
	uniform float transmission;
	uniform float thickness;
	uniform float attenuationDistance;
	uniform vec3 attenuationColor;
	#ifdef USE_TRANSMISSIONMAP
		uniform sampler2D transmissionMap;
	#endif
	#ifdef USE_THICKNESSMAP
		uniform sampler2D thicknessMap;
	#endif
	uniform vec2 transmissionSamplerSize;
	uniform sampler2D transmissionSamplerMap;
	uniform mat4 modelMatrix;
	uniform mat4 projectionMatrix;
	varying vec3 vWorldPosition;
	float w0( float a ) {
		return ( 1.0 / 6.0 ) * ( a * ( a * ( - a + 3.0 ) - 3.0 ) + 1.0 );
	}
	float w1( float a ) {
		return ( 1.0 / 6.0 ) * ( a *  a * ( 3.0 * a - 6.0 ) + 4.0 );
	}
	float w2( float a ){
		return ( 1.0 / 6.0 ) * ( a * ( a * ( - 3.0 * a + 3.0 ) + 3.0 ) + 1.0 );
	}
	float w3( float a ) {
		return ( 1.0 / 6.0 ) * ( a * a * a );
	}
	float g0( float a ) {
		return w0( a ) + w1( a );
	}
	float g1( float a ) {
		return w2( a ) + w3( a );
	}
	float h0( float a ) {
		return - 1.0 + w1( a ) / ( w0( a ) + w1( a ) );
	}
	float h1( float a ) {
		return 1.0 + w3( a ) / ( w2( a ) + w3( a ) );
	}
	vec4 bicubic( sampler2D tex, vec2 uv, vec4 texelSize, float lod ) {
		uv = uv * texelSize.zw + 0.5;
		vec2 iuv = floor( uv );
		vec2 fuv = fract( uv );
		float g0x = g0( fuv.x );
		float g1x = g1( fuv.x );
		float h0x = h0( fuv.x );
		float h1x = h1( fuv.x );
		float h0y = h0( fuv.y );
		float h1y = h1( fuv.y );
		vec2 p0 = ( vec2( iuv.x + h0x, iuv.y + h0y ) - 0.5 ) * texelSize.xy;
		vec2 p1 = ( vec2( iuv.x + h1x, iuv.y + h0y ) - 0.5 ) * texelSize.xy;
		vec2 p2 = ( vec2( iuv.x + h0x, iuv.y + h1y ) - 0.5 ) * texelSize.xy;
		vec2 p3 = ( vec2( iuv.x + h1x, iuv.y + h1y ) - 0.5 ) * texelSize.xy;
		return g0( fuv.y ) * ( g0x * textureLod( tex, p0, lod ) + g1x * textureLod( tex, p1, lod ) ) +
			g1( fuv.y ) * ( g0x * textureLod( tex, p2, lod ) + g1x * textureLod( tex, p3, lod ) );
	}
	vec4 textureBicubic( sampler2D sampler, vec2 uv, float lod ) {
		vec2 fLodSize = vec2( textureSize( sampler, int( lod ) ) );
		vec2 cLodSize = vec2( textureSize( sampler, int( lod + 1.0 ) ) );
		vec2 fLodSizeInv = 1.0 / fLodSize;
		vec2 cLodSizeInv = 1.0 / cLodSize;
		vec4 fSample = bicubic( sampler, uv, vec4( fLodSizeInv, fLodSize ), floor( lod ) );
		vec4 cSample = bicubic( sampler, uv, vec4( cLodSizeInv, cLodSize ), ceil( lod ) );
		return mix( fSample, cSample, fract( lod ) );
	}
	vec3 getVolumeTransmissionRay( const in vec3 n, const in vec3 v, const in float thickness, const in float ior, const in mat4 modelMatrix ) {
		vec3 refractionVector = refract( - v, normalize( n ), 1.0 / ior );
		vec3 modelScale;
		modelScale.x = length( vec3( modelMatrix[ 0 ].xyz ) );
		modelScale.y = length( vec3( modelMatrix[ 1 ].xyz ) );
		modelScale.z = length( vec3( modelMatrix[ 2 ].xyz ) );
		return normalize( refractionVector ) * thickness * modelScale;
	}
	float applyIorToRoughness( const in float roughness, const in float ior ) {
		return roughness * clamp( ior * 2.0 - 2.0, 0.0, 1.0 );
	}
	vec4 getTransmissionSample( const in vec2 fragCoord, const in float roughness, const in float ior ) {
		float lod = log2( transmissionSamplerSize.x ) * applyIorToRoughness( roughness, ior );
		return textureBicubic( transmissionSamplerMap, fragCoord.xy, lod );
	}
	vec3 volumeAttenuation( const in float transmissionDistance, const in vec3 attenuationColor, const in float attenuationDistance ) {
		if ( isinf( attenuationDistance ) ) {
			return vec3( 1.0 );
		} else {
			vec3 attenuationCoefficient = -log( attenuationColor ) / attenuationDistance;
			vec3 transmittance = exp( - attenuationCoefficient * transmissionDistance );			return transmittance;
		}
	}
	vec4 getIBLVolumeRefraction( const in vec3 n, const in vec3 v, const in float roughness, const in vec3 diffuseColor,
		const in vec3 specularColor, const in float specularF90, const in vec3 position, const in mat4 modelMatrix,
		const in mat4 viewMatrix, const in mat4 projMatrix, const in float dispersion, const in float ior, const in float thickness,
		const in vec3 attenuationColor, const in float attenuationDistance ) {
		vec4 transmittedLight;
		vec3 transmittance;
		#ifdef USE_DISPERSION
			float halfSpread = ( ior - 1.0 ) * 0.025 * dispersion;
			vec3 iors = vec3( ior - halfSpread, ior, ior + halfSpread );
			for ( int i = 0; i < 3; i ++ ) {
				vec3 transmissionRay = getVolumeTransmissionRay( n, v, thickness, iors[ i ], modelMatrix );
				vec3 refractedRayExit = position + transmissionRay;
		
				vec4 ndcPos = projMatrix * viewMatrix * vec4( refractedRayExit, 1.0 );
				vec2 refractionCoords = ndcPos.xy / ndcPos.w;
				refractionCoords += 1.0;
				refractionCoords /= 2.0;
		
				vec4 transmissionSample = getTransmissionSample( refractionCoords, roughness, iors[ i ] );
				transmittedLight[ i ] = transmissionSample[ i ];
				transmittedLight.a += transmissionSample.a;
				transmittance[ i ] = diffuseColor[ i ] * volumeAttenuation( length( transmissionRay ), attenuationColor, attenuationDistance )[ i ];
			}
			transmittedLight.a /= 3.0;
		
		#else
		
			vec3 transmissionRay = getVolumeTransmissionRay( n, v, thickness, ior, modelMatrix );
			vec3 refractedRayExit = position + transmissionRay;
			vec4 ndcPos = projMatrix * viewMatrix * vec4( refractedRayExit, 1.0 );
			vec2 refractionCoords = ndcPos.xy / ndcPos.w;
			refractionCoords += 1.0;
			refractionCoords /= 2.0;
			transmittedLight = getTransmissionSample( refractionCoords, roughness, ior );
			transmittance = diffuseColor * volumeAttenuation( length( transmissionRay ), attenuationColor, attenuationDistance );
		
		#endif
		vec3 attenuatedColor = transmittance * transmittedLight.rgb;
		vec3 F = EnvironmentBRDF( n, v, specularColor, specularF90, roughness );
		float transmittanceFactor = ( transmittance.r + transmittance.g + transmittance.b ) / 3.0;
		return vec4( ( 1.0 - F ) * attenuatedColor, 1.0 - ( 1.0 - transmittedLight.a ) * transmittanceFactor );
	}
#endif`,L_=`#if defined( USE_UV ) || defined( USE_ANISOTROPY )
	varying vec2 vUv;
#endif
#ifdef USE_MAP
	varying vec2 vMapUv;
#endif
#ifdef USE_ALPHAMAP
	varying vec2 vAlphaMapUv;
#endif
#ifdef USE_LIGHTMAP
	varying vec2 vLightMapUv;
#endif
#ifdef USE_AOMAP
	varying vec2 vAoMapUv;
#endif
#ifdef USE_BUMPMAP
	varying vec2 vBumpMapUv;
#endif
#ifdef USE_NORMALMAP
	varying vec2 vNormalMapUv;
#endif
#ifdef USE_EMISSIVEMAP
	varying vec2 vEmissiveMapUv;
#endif
#ifdef USE_METALNESSMAP
	varying vec2 vMetalnessMapUv;
#endif
#ifdef USE_ROUGHNESSMAP
	varying vec2 vRoughnessMapUv;
#endif
#ifdef USE_ANISOTROPYMAP
	varying vec2 vAnisotropyMapUv;
#endif
#ifdef USE_CLEARCOATMAP
	varying vec2 vClearcoatMapUv;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	varying vec2 vClearcoatNormalMapUv;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	varying vec2 vClearcoatRoughnessMapUv;
#endif
#ifdef USE_IRIDESCENCEMAP
	varying vec2 vIridescenceMapUv;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	varying vec2 vIridescenceThicknessMapUv;
#endif
#ifdef USE_SHEEN_COLORMAP
	varying vec2 vSheenColorMapUv;
#endif
#ifdef USE_SHEEN_ROUGHNESSMAP
	varying vec2 vSheenRoughnessMapUv;
#endif
#ifdef USE_SPECULARMAP
	varying vec2 vSpecularMapUv;
#endif
#ifdef USE_SPECULAR_COLORMAP
	varying vec2 vSpecularColorMapUv;
#endif
#ifdef USE_SPECULAR_INTENSITYMAP
	varying vec2 vSpecularIntensityMapUv;
#endif
#ifdef USE_TRANSMISSIONMAP
	uniform mat3 transmissionMapTransform;
	varying vec2 vTransmissionMapUv;
#endif
#ifdef USE_THICKNESSMAP
	uniform mat3 thicknessMapTransform;
	varying vec2 vThicknessMapUv;
#endif`,D_=`#if defined( USE_UV ) || defined( USE_ANISOTROPY )
	varying vec2 vUv;
#endif
#ifdef USE_MAP
	uniform mat3 mapTransform;
	varying vec2 vMapUv;
#endif
#ifdef USE_ALPHAMAP
	uniform mat3 alphaMapTransform;
	varying vec2 vAlphaMapUv;
#endif
#ifdef USE_LIGHTMAP
	uniform mat3 lightMapTransform;
	varying vec2 vLightMapUv;
#endif
#ifdef USE_AOMAP
	uniform mat3 aoMapTransform;
	varying vec2 vAoMapUv;
#endif
#ifdef USE_BUMPMAP
	uniform mat3 bumpMapTransform;
	varying vec2 vBumpMapUv;
#endif
#ifdef USE_NORMALMAP
	uniform mat3 normalMapTransform;
	varying vec2 vNormalMapUv;
#endif
#ifdef USE_DISPLACEMENTMAP
	uniform mat3 displacementMapTransform;
	varying vec2 vDisplacementMapUv;
#endif
#ifdef USE_EMISSIVEMAP
	uniform mat3 emissiveMapTransform;
	varying vec2 vEmissiveMapUv;
#endif
#ifdef USE_METALNESSMAP
	uniform mat3 metalnessMapTransform;
	varying vec2 vMetalnessMapUv;
#endif
#ifdef USE_ROUGHNESSMAP
	uniform mat3 roughnessMapTransform;
	varying vec2 vRoughnessMapUv;
#endif
#ifdef USE_ANISOTROPYMAP
	uniform mat3 anisotropyMapTransform;
	varying vec2 vAnisotropyMapUv;
#endif
#ifdef USE_CLEARCOATMAP
	uniform mat3 clearcoatMapTransform;
	varying vec2 vClearcoatMapUv;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	uniform mat3 clearcoatNormalMapTransform;
	varying vec2 vClearcoatNormalMapUv;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	uniform mat3 clearcoatRoughnessMapTransform;
	varying vec2 vClearcoatRoughnessMapUv;
#endif
#ifdef USE_SHEEN_COLORMAP
	uniform mat3 sheenColorMapTransform;
	varying vec2 vSheenColorMapUv;
#endif
#ifdef USE_SHEEN_ROUGHNESSMAP
	uniform mat3 sheenRoughnessMapTransform;
	varying vec2 vSheenRoughnessMapUv;
#endif
#ifdef USE_IRIDESCENCEMAP
	uniform mat3 iridescenceMapTransform;
	varying vec2 vIridescenceMapUv;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	uniform mat3 iridescenceThicknessMapTransform;
	varying vec2 vIridescenceThicknessMapUv;
#endif
#ifdef USE_SPECULARMAP
	uniform mat3 specularMapTransform;
	varying vec2 vSpecularMapUv;
#endif
#ifdef USE_SPECULAR_COLORMAP
	uniform mat3 specularColorMapTransform;
	varying vec2 vSpecularColorMapUv;
#endif
#ifdef USE_SPECULAR_INTENSITYMAP
	uniform mat3 specularIntensityMapTransform;
	varying vec2 vSpecularIntensityMapUv;
#endif
#ifdef USE_TRANSMISSIONMAP
	uniform mat3 transmissionMapTransform;
	varying vec2 vTransmissionMapUv;
#endif
#ifdef USE_THICKNESSMAP
	uniform mat3 thicknessMapTransform;
	varying vec2 vThicknessMapUv;
#endif`,U_=`#if defined( USE_UV ) || defined( USE_ANISOTROPY )
	vUv = vec3( uv, 1 ).xy;
#endif
#ifdef USE_MAP
	vMapUv = ( mapTransform * vec3( MAP_UV, 1 ) ).xy;
#endif
#ifdef USE_ALPHAMAP
	vAlphaMapUv = ( alphaMapTransform * vec3( ALPHAMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_LIGHTMAP
	vLightMapUv = ( lightMapTransform * vec3( LIGHTMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_AOMAP
	vAoMapUv = ( aoMapTransform * vec3( AOMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_BUMPMAP
	vBumpMapUv = ( bumpMapTransform * vec3( BUMPMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_NORMALMAP
	vNormalMapUv = ( normalMapTransform * vec3( NORMALMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_DISPLACEMENTMAP
	vDisplacementMapUv = ( displacementMapTransform * vec3( DISPLACEMENTMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_EMISSIVEMAP
	vEmissiveMapUv = ( emissiveMapTransform * vec3( EMISSIVEMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_METALNESSMAP
	vMetalnessMapUv = ( metalnessMapTransform * vec3( METALNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_ROUGHNESSMAP
	vRoughnessMapUv = ( roughnessMapTransform * vec3( ROUGHNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_ANISOTROPYMAP
	vAnisotropyMapUv = ( anisotropyMapTransform * vec3( ANISOTROPYMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_CLEARCOATMAP
	vClearcoatMapUv = ( clearcoatMapTransform * vec3( CLEARCOATMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	vClearcoatNormalMapUv = ( clearcoatNormalMapTransform * vec3( CLEARCOAT_NORMALMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	vClearcoatRoughnessMapUv = ( clearcoatRoughnessMapTransform * vec3( CLEARCOAT_ROUGHNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_IRIDESCENCEMAP
	vIridescenceMapUv = ( iridescenceMapTransform * vec3( IRIDESCENCEMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	vIridescenceThicknessMapUv = ( iridescenceThicknessMapTransform * vec3( IRIDESCENCE_THICKNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SHEEN_COLORMAP
	vSheenColorMapUv = ( sheenColorMapTransform * vec3( SHEEN_COLORMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SHEEN_ROUGHNESSMAP
	vSheenRoughnessMapUv = ( sheenRoughnessMapTransform * vec3( SHEEN_ROUGHNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SPECULARMAP
	vSpecularMapUv = ( specularMapTransform * vec3( SPECULARMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SPECULAR_COLORMAP
	vSpecularColorMapUv = ( specularColorMapTransform * vec3( SPECULAR_COLORMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SPECULAR_INTENSITYMAP
	vSpecularIntensityMapUv = ( specularIntensityMapTransform * vec3( SPECULAR_INTENSITYMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_TRANSMISSIONMAP
	vTransmissionMapUv = ( transmissionMapTransform * vec3( TRANSMISSIONMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_THICKNESSMAP
	vThicknessMapUv = ( thicknessMapTransform * vec3( THICKNESSMAP_UV, 1 ) ).xy;
#endif`,N_=`#if defined( USE_ENVMAP ) || defined( DISTANCE ) || defined ( USE_SHADOWMAP ) || defined ( USE_TRANSMISSION ) || NUM_SPOT_LIGHT_COORDS > 0
	vec4 worldPosition = vec4( transformed, 1.0 );
	#ifdef USE_BATCHING
		worldPosition = batchingMatrix * worldPosition;
	#endif
	#ifdef USE_INSTANCING
		worldPosition = instanceMatrix * worldPosition;
	#endif
	worldPosition = modelMatrix * worldPosition;
#endif`,O_=`varying vec2 vUv;
uniform mat3 uvTransform;
void main() {
	vUv = ( uvTransform * vec3( uv, 1 ) ).xy;
	gl_Position = vec4( position.xy, 1.0, 1.0 );
}`,F_=`uniform sampler2D t2D;
uniform float backgroundIntensity;
varying vec2 vUv;
void main() {
	vec4 texColor = texture2D( t2D, vUv );
	#ifdef DECODE_VIDEO_TEXTURE
		texColor = vec4( mix( pow( texColor.rgb * 0.9478672986 + vec3( 0.0521327014 ), vec3( 2.4 ) ), texColor.rgb * 0.0773993808, vec3( lessThanEqual( texColor.rgb, vec3( 0.04045 ) ) ) ), texColor.w );
	#endif
	texColor.rgb *= backgroundIntensity;
	gl_FragColor = texColor;
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,B_=`varying vec3 vWorldDirection;
#include <common>
void main() {
	vWorldDirection = transformDirection( position, modelMatrix );
	#include <begin_vertex>
	#include <project_vertex>
	gl_Position.z = gl_Position.w;
}`,k_=`#ifdef ENVMAP_TYPE_CUBE
	uniform samplerCube envMap;
#elif defined( ENVMAP_TYPE_CUBE_UV )
	uniform sampler2D envMap;
#endif
uniform float flipEnvMap;
uniform float backgroundBlurriness;
uniform float backgroundIntensity;
uniform mat3 backgroundRotation;
varying vec3 vWorldDirection;
#include <cube_uv_reflection_fragment>
void main() {
	#ifdef ENVMAP_TYPE_CUBE
		vec4 texColor = textureCube( envMap, backgroundRotation * vec3( flipEnvMap * vWorldDirection.x, vWorldDirection.yz ) );
	#elif defined( ENVMAP_TYPE_CUBE_UV )
		vec4 texColor = textureCubeUV( envMap, backgroundRotation * vWorldDirection, backgroundBlurriness );
	#else
		vec4 texColor = vec4( 0.0, 0.0, 0.0, 1.0 );
	#endif
	texColor.rgb *= backgroundIntensity;
	gl_FragColor = texColor;
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,z_=`varying vec3 vWorldDirection;
#include <common>
void main() {
	vWorldDirection = transformDirection( position, modelMatrix );
	#include <begin_vertex>
	#include <project_vertex>
	gl_Position.z = gl_Position.w;
}`,V_=`uniform samplerCube tCube;
uniform float tFlip;
uniform float opacity;
varying vec3 vWorldDirection;
void main() {
	vec4 texColor = textureCube( tCube, vec3( tFlip * vWorldDirection.x, vWorldDirection.yz ) );
	gl_FragColor = texColor;
	gl_FragColor.a *= opacity;
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,H_=`#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
varying vec2 vHighPrecisionZW;
void main() {
	#include <uv_vertex>
	#include <batching_vertex>
	#include <skinbase_vertex>
	#include <morphinstance_vertex>
	#ifdef USE_DISPLACEMENTMAP
		#include <beginnormal_vertex>
		#include <morphnormal_vertex>
		#include <skinnormal_vertex>
	#endif
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vHighPrecisionZW = gl_Position.zw;
}`,G_=`#if DEPTH_PACKING == 3200
	uniform float opacity;
#endif
#include <common>
#include <packing>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
varying vec2 vHighPrecisionZW;
void main() {
	vec4 diffuseColor = vec4( 1.0 );
	#include <clipping_planes_fragment>
	#if DEPTH_PACKING == 3200
		diffuseColor.a = opacity;
	#endif
	#include <map_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <logdepthbuf_fragment>
	float fragCoordZ = 0.5 * vHighPrecisionZW[0] / vHighPrecisionZW[1] + 0.5;
	#if DEPTH_PACKING == 3200
		gl_FragColor = vec4( vec3( 1.0 - fragCoordZ ), opacity );
	#elif DEPTH_PACKING == 3201
		gl_FragColor = packDepthToRGBA( fragCoordZ );
	#elif DEPTH_PACKING == 3202
		gl_FragColor = vec4( packDepthToRGB( fragCoordZ ), 1.0 );
	#elif DEPTH_PACKING == 3203
		gl_FragColor = vec4( packDepthToRG( fragCoordZ ), 0.0, 1.0 );
	#endif
}`,W_=`#define DISTANCE
varying vec3 vWorldPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <batching_vertex>
	#include <skinbase_vertex>
	#include <morphinstance_vertex>
	#ifdef USE_DISPLACEMENTMAP
		#include <beginnormal_vertex>
		#include <morphnormal_vertex>
		#include <skinnormal_vertex>
	#endif
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <worldpos_vertex>
	#include <clipping_planes_vertex>
	vWorldPosition = worldPosition.xyz;
}`,X_=`#define DISTANCE
uniform vec3 referencePosition;
uniform float nearDistance;
uniform float farDistance;
varying vec3 vWorldPosition;
#include <common>
#include <packing>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <clipping_planes_pars_fragment>
void main () {
	vec4 diffuseColor = vec4( 1.0 );
	#include <clipping_planes_fragment>
	#include <map_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	float dist = length( vWorldPosition - referencePosition );
	dist = ( dist - nearDistance ) / ( farDistance - nearDistance );
	dist = saturate( dist );
	gl_FragColor = packDepthToRGBA( dist );
}`,Y_=`varying vec3 vWorldDirection;
#include <common>
void main() {
	vWorldDirection = transformDirection( position, modelMatrix );
	#include <begin_vertex>
	#include <project_vertex>
}`,q_=`uniform sampler2D tEquirect;
varying vec3 vWorldDirection;
#include <common>
void main() {
	vec3 direction = normalize( vWorldDirection );
	vec2 sampleUV = equirectUv( direction );
	gl_FragColor = texture2D( tEquirect, sampleUV );
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,$_=`uniform float scale;
attribute float lineDistance;
varying float vLineDistance;
#include <common>
#include <uv_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	vLineDistance = scale * lineDistance;
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <fog_vertex>
}`,Z_=`uniform vec3 diffuse;
uniform float opacity;
uniform float dashSize;
uniform float totalSize;
varying float vLineDistance;
#include <common>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <fog_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	if ( mod( vLineDistance, totalSize ) > dashSize ) {
		discard;
	}
	vec3 outgoingLight = vec3( 0.0 );
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	outgoingLight = diffuseColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
}`,J_=`#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <envmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#if defined ( USE_ENVMAP ) || defined ( USE_SKINNING )
		#include <beginnormal_vertex>
		#include <morphnormal_vertex>
		#include <skinbase_vertex>
		#include <skinnormal_vertex>
		#include <defaultnormal_vertex>
	#endif
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <worldpos_vertex>
	#include <envmap_vertex>
	#include <fog_vertex>
}`,K_=`uniform vec3 diffuse;
uniform float opacity;
#ifndef FLAT_SHADED
	varying vec3 vNormal;
#endif
#include <common>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_pars_fragment>
#include <fog_pars_fragment>
#include <specularmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <specularmap_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	#ifdef USE_LIGHTMAP
		vec4 lightMapTexel = texture2D( lightMap, vLightMapUv );
		reflectedLight.indirectDiffuse += lightMapTexel.rgb * lightMapIntensity * RECIPROCAL_PI;
	#else
		reflectedLight.indirectDiffuse += vec3( 1.0 );
	#endif
	#include <aomap_fragment>
	reflectedLight.indirectDiffuse *= diffuseColor.rgb;
	vec3 outgoingLight = reflectedLight.indirectDiffuse;
	#include <envmap_fragment>
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,j_=`#define LAMBERT
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <envmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <envmap_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,Q_=`#define LAMBERT
uniform vec3 diffuse;
uniform vec3 emissive;
uniform float opacity;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_pars_fragment>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_lambert_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <specularmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <specularmap_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_lambert_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 outgoingLight = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse + totalEmissiveRadiance;
	#include <envmap_fragment>
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,tx=`#define MATCAP
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <color_pars_vertex>
#include <displacementmap_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <fog_vertex>
	vViewPosition = - mvPosition.xyz;
}`,ex=`#define MATCAP
uniform vec3 diffuse;
uniform float opacity;
uniform sampler2D matcap;
varying vec3 vViewPosition;
#include <common>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <fog_pars_fragment>
#include <normal_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	vec3 viewDir = normalize( vViewPosition );
	vec3 x = normalize( vec3( viewDir.z, 0.0, - viewDir.x ) );
	vec3 y = cross( viewDir, x );
	vec2 uv = vec2( dot( x, normal ), dot( y, normal ) ) * 0.495 + 0.5;
	#ifdef USE_MATCAP
		vec4 matcapColor = texture2D( matcap, uv );
	#else
		vec4 matcapColor = vec4( vec3( mix( 0.2, 0.8, uv.y ) ), 1.0 );
	#endif
	vec3 outgoingLight = diffuseColor.rgb * matcapColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,nx=`#define NORMAL
#if defined( FLAT_SHADED ) || defined( USE_BUMPMAP ) || defined( USE_NORMALMAP_TANGENTSPACE )
	varying vec3 vViewPosition;
#endif
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphinstance_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
#if defined( FLAT_SHADED ) || defined( USE_BUMPMAP ) || defined( USE_NORMALMAP_TANGENTSPACE )
	vViewPosition = - mvPosition.xyz;
#endif
}`,ix=`#define NORMAL
uniform float opacity;
#if defined( FLAT_SHADED ) || defined( USE_BUMPMAP ) || defined( USE_NORMALMAP_TANGENTSPACE )
	varying vec3 vViewPosition;
#endif
#include <packing>
#include <uv_pars_fragment>
#include <normal_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( 0.0, 0.0, 0.0, opacity );
	#include <clipping_planes_fragment>
	#include <logdepthbuf_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	gl_FragColor = vec4( packNormalToRGB( normal ), diffuseColor.a );
	#ifdef OPAQUE
		gl_FragColor.a = 1.0;
	#endif
}`,sx=`#define PHONG
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <envmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphinstance_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <envmap_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,rx=`#define PHONG
uniform vec3 diffuse;
uniform vec3 emissive;
uniform vec3 specular;
uniform float shininess;
uniform float opacity;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_pars_fragment>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_phong_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <specularmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <specularmap_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_phong_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 outgoingLight = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse + reflectedLight.directSpecular + reflectedLight.indirectSpecular + totalEmissiveRadiance;
	#include <envmap_fragment>
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,ox=`#define STANDARD
varying vec3 vViewPosition;
#ifdef USE_TRANSMISSION
	varying vec3 vWorldPosition;
#endif
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
#ifdef USE_TRANSMISSION
	vWorldPosition = worldPosition.xyz;
#endif
}`,ax=`#define STANDARD
#ifdef PHYSICAL
	#define IOR
	#define USE_SPECULAR
#endif
uniform vec3 diffuse;
uniform vec3 emissive;
uniform float roughness;
uniform float metalness;
uniform float opacity;
#ifdef IOR
	uniform float ior;
#endif
#ifdef USE_SPECULAR
	uniform float specularIntensity;
	uniform vec3 specularColor;
	#ifdef USE_SPECULAR_COLORMAP
		uniform sampler2D specularColorMap;
	#endif
	#ifdef USE_SPECULAR_INTENSITYMAP
		uniform sampler2D specularIntensityMap;
	#endif
#endif
#ifdef USE_CLEARCOAT
	uniform float clearcoat;
	uniform float clearcoatRoughness;
#endif
#ifdef USE_DISPERSION
	uniform float dispersion;
#endif
#ifdef USE_IRIDESCENCE
	uniform float iridescence;
	uniform float iridescenceIOR;
	uniform float iridescenceThicknessMinimum;
	uniform float iridescenceThicknessMaximum;
#endif
#ifdef USE_SHEEN
	uniform vec3 sheenColor;
	uniform float sheenRoughness;
	#ifdef USE_SHEEN_COLORMAP
		uniform sampler2D sheenColorMap;
	#endif
	#ifdef USE_SHEEN_ROUGHNESSMAP
		uniform sampler2D sheenRoughnessMap;
	#endif
#endif
#ifdef USE_ANISOTROPY
	uniform vec2 anisotropyVector;
	#ifdef USE_ANISOTROPYMAP
		uniform sampler2D anisotropyMap;
	#endif
#endif
varying vec3 vViewPosition;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <iridescence_fragment>
#include <cube_uv_reflection_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_physical_pars_fragment>
#include <fog_pars_fragment>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_physical_pars_fragment>
#include <transmission_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <clearcoat_pars_fragment>
#include <iridescence_pars_fragment>
#include <roughnessmap_pars_fragment>
#include <metalnessmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <roughnessmap_fragment>
	#include <metalnessmap_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <clearcoat_normal_fragment_begin>
	#include <clearcoat_normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_physical_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 totalDiffuse = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse;
	vec3 totalSpecular = reflectedLight.directSpecular + reflectedLight.indirectSpecular;
	#include <transmission_fragment>
	vec3 outgoingLight = totalDiffuse + totalSpecular + totalEmissiveRadiance;
	#ifdef USE_SHEEN
		float sheenEnergyComp = 1.0 - 0.157 * max3( material.sheenColor );
		outgoingLight = outgoingLight * sheenEnergyComp + sheenSpecularDirect + sheenSpecularIndirect;
	#endif
	#ifdef USE_CLEARCOAT
		float dotNVcc = saturate( dot( geometryClearcoatNormal, geometryViewDir ) );
		vec3 Fcc = F_Schlick( material.clearcoatF0, material.clearcoatF90, dotNVcc );
		outgoingLight = outgoingLight * ( 1.0 - material.clearcoat * Fcc ) + ( clearcoatSpecularDirect + clearcoatSpecularIndirect ) * material.clearcoat;
	#endif
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,lx=`#define TOON
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,cx=`#define TOON
uniform vec3 diffuse;
uniform vec3 emissive;
uniform float opacity;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <gradientmap_pars_fragment>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_toon_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_toon_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 outgoingLight = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse + totalEmissiveRadiance;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,hx=`uniform float size;
uniform float scale;
#include <common>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
#ifdef USE_POINTS_UV
	varying vec2 vUv;
	uniform mat3 uvTransform;
#endif
void main() {
	#ifdef USE_POINTS_UV
		vUv = ( uvTransform * vec3( uv, 1 ) ).xy;
	#endif
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <project_vertex>
	gl_PointSize = size;
	#ifdef USE_SIZEATTENUATION
		bool isPerspective = isPerspectiveMatrix( projectionMatrix );
		if ( isPerspective ) gl_PointSize *= ( scale / - mvPosition.z );
	#endif
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <worldpos_vertex>
	#include <fog_vertex>
}`,ux=`uniform vec3 diffuse;
uniform float opacity;
#include <common>
#include <color_pars_fragment>
#include <map_particle_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <fog_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	vec3 outgoingLight = vec3( 0.0 );
	#include <logdepthbuf_fragment>
	#include <map_particle_fragment>
	#include <color_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	outgoingLight = diffuseColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
}`,fx=`#include <common>
#include <batching_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <shadowmap_pars_vertex>
void main() {
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphinstance_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <worldpos_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,dx=`uniform vec3 color;
uniform float opacity;
#include <common>
#include <packing>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <logdepthbuf_pars_fragment>
#include <shadowmap_pars_fragment>
#include <shadowmask_pars_fragment>
void main() {
	#include <logdepthbuf_fragment>
	gl_FragColor = vec4( color, opacity * ( 1.0 - getShadowMask() ) );
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
}`,px=`uniform float rotation;
uniform vec2 center;
#include <common>
#include <uv_pars_vertex>
#include <fog_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	vec4 mvPosition = modelViewMatrix[ 3 ];
	vec2 scale = vec2( length( modelMatrix[ 0 ].xyz ), length( modelMatrix[ 1 ].xyz ) );
	#ifndef USE_SIZEATTENUATION
		bool isPerspective = isPerspectiveMatrix( projectionMatrix );
		if ( isPerspective ) scale *= - mvPosition.z;
	#endif
	vec2 alignedPosition = ( position.xy - ( center - vec2( 0.5 ) ) ) * scale;
	vec2 rotatedPosition;
	rotatedPosition.x = cos( rotation ) * alignedPosition.x - sin( rotation ) * alignedPosition.y;
	rotatedPosition.y = sin( rotation ) * alignedPosition.x + cos( rotation ) * alignedPosition.y;
	mvPosition.xy += rotatedPosition;
	gl_Position = projectionMatrix * mvPosition;
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <fog_vertex>
}`,mx=`uniform vec3 diffuse;
uniform float opacity;
#include <common>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <fog_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	vec3 outgoingLight = vec3( 0.0 );
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	outgoingLight = diffuseColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
}`,ne={alphahash_fragment:Fg,alphahash_pars_fragment:Bg,alphamap_fragment:kg,alphamap_pars_fragment:zg,alphatest_fragment:Vg,alphatest_pars_fragment:Hg,aomap_fragment:Gg,aomap_pars_fragment:Wg,batching_pars_vertex:Xg,batching_vertex:Yg,begin_vertex:qg,beginnormal_vertex:$g,bsdfs:Zg,iridescence_fragment:Jg,bumpmap_pars_fragment:Kg,clipping_planes_fragment:jg,clipping_planes_pars_fragment:Qg,clipping_planes_pars_vertex:t0,clipping_planes_vertex:e0,color_fragment:n0,color_pars_fragment:i0,color_pars_vertex:s0,color_vertex:r0,common:o0,cube_uv_reflection_fragment:a0,defaultnormal_vertex:l0,displacementmap_pars_vertex:c0,displacementmap_vertex:h0,emissivemap_fragment:u0,emissivemap_pars_fragment:f0,colorspace_fragment:d0,colorspace_pars_fragment:p0,envmap_fragment:m0,envmap_common_pars_fragment:g0,envmap_pars_fragment:_0,envmap_pars_vertex:x0,envmap_physical_pars_fragment:R0,envmap_vertex:y0,fog_vertex:v0,fog_pars_vertex:M0,fog_fragment:S0,fog_pars_fragment:b0,gradientmap_pars_fragment:w0,lightmap_pars_fragment:E0,lights_lambert_fragment:T0,lights_lambert_pars_fragment:A0,lights_pars_begin:C0,lights_toon_fragment:P0,lights_toon_pars_fragment:I0,lights_phong_fragment:L0,lights_phong_pars_fragment:D0,lights_physical_fragment:U0,lights_physical_pars_fragment:N0,lights_fragment_begin:O0,lights_fragment_maps:F0,lights_fragment_end:B0,logdepthbuf_fragment:k0,logdepthbuf_pars_fragment:z0,logdepthbuf_pars_vertex:V0,logdepthbuf_vertex:H0,map_fragment:G0,map_pars_fragment:W0,map_particle_fragment:X0,map_particle_pars_fragment:Y0,metalnessmap_fragment:q0,metalnessmap_pars_fragment:$0,morphinstance_vertex:Z0,morphcolor_vertex:J0,morphnormal_vertex:K0,morphtarget_pars_vertex:j0,morphtarget_vertex:Q0,normal_fragment_begin:t_,normal_fragment_maps:e_,normal_pars_fragment:n_,normal_pars_vertex:i_,normal_vertex:s_,normalmap_pars_fragment:r_,clearcoat_normal_fragment_begin:o_,clearcoat_normal_fragment_maps:a_,clearcoat_pars_fragment:l_,iridescence_pars_fragment:c_,opaque_fragment:h_,packing:u_,premultiplied_alpha_fragment:f_,project_vertex:d_,dithering_fragment:p_,dithering_pars_fragment:m_,roughnessmap_fragment:g_,roughnessmap_pars_fragment:__,shadowmap_pars_fragment:x_,shadowmap_pars_vertex:y_,shadowmap_vertex:v_,shadowmask_pars_fragment:M_,skinbase_vertex:S_,skinning_pars_vertex:b_,skinning_vertex:w_,skinnormal_vertex:E_,specularmap_fragment:T_,specularmap_pars_fragment:A_,tonemapping_fragment:C_,tonemapping_pars_fragment:R_,transmission_fragment:P_,transmission_pars_fragment:I_,uv_pars_fragment:L_,uv_pars_vertex:D_,uv_vertex:U_,worldpos_vertex:N_,background_vert:O_,background_frag:F_,backgroundCube_vert:B_,backgroundCube_frag:k_,cube_vert:z_,cube_frag:V_,depth_vert:H_,depth_frag:G_,distanceRGBA_vert:W_,distanceRGBA_frag:X_,equirect_vert:Y_,equirect_frag:q_,linedashed_vert:$_,linedashed_frag:Z_,meshbasic_vert:J_,meshbasic_frag:K_,meshlambert_vert:j_,meshlambert_frag:Q_,meshmatcap_vert:tx,meshmatcap_frag:ex,meshnormal_vert:nx,meshnormal_frag:ix,meshphong_vert:sx,meshphong_frag:rx,meshphysical_vert:ox,meshphysical_frag:ax,meshtoon_vert:lx,meshtoon_frag:cx,points_vert:hx,points_frag:ux,shadow_vert:fx,shadow_frag:dx,sprite_vert:px,sprite_frag:mx},yt={common:{diffuse:{value:new ge(16777215)},opacity:{value:1},map:{value:null},mapTransform:{value:new te},alphaMap:{value:null},alphaMapTransform:{value:new te},alphaTest:{value:0}},specularmap:{specularMap:{value:null},specularMapTransform:{value:new te}},envmap:{envMap:{value:null},envMapRotation:{value:new te},flipEnvMap:{value:-1},reflectivity:{value:1},ior:{value:1.5},refractionRatio:{value:.98}},aomap:{aoMap:{value:null},aoMapIntensity:{value:1},aoMapTransform:{value:new te}},lightmap:{lightMap:{value:null},lightMapIntensity:{value:1},lightMapTransform:{value:new te}},bumpmap:{bumpMap:{value:null},bumpMapTransform:{value:new te},bumpScale:{value:1}},normalmap:{normalMap:{value:null},normalMapTransform:{value:new te},normalScale:{value:new ie(1,1)}},displacementmap:{displacementMap:{value:null},displacementMapTransform:{value:new te},displacementScale:{value:1},displacementBias:{value:0}},emissivemap:{emissiveMap:{value:null},emissiveMapTransform:{value:new te}},metalnessmap:{metalnessMap:{value:null},metalnessMapTransform:{value:new te}},roughnessmap:{roughnessMap:{value:null},roughnessMapTransform:{value:new te}},gradientmap:{gradientMap:{value:null}},fog:{fogDensity:{value:25e-5},fogNear:{value:1},fogFar:{value:2e3},fogColor:{value:new ge(16777215)}},lights:{ambientLightColor:{value:[]},lightProbe:{value:[]},directionalLights:{value:[],properties:{direction:{},color:{}}},directionalLightShadows:{value:[],properties:{shadowIntensity:1,shadowBias:{},shadowNormalBias:{},shadowRadius:{},shadowMapSize:{}}},directionalShadowMap:{value:[]},directionalShadowMatrix:{value:[]},spotLights:{value:[],properties:{color:{},position:{},direction:{},distance:{},coneCos:{},penumbraCos:{},decay:{}}},spotLightShadows:{value:[],properties:{shadowIntensity:1,shadowBias:{},shadowNormalBias:{},shadowRadius:{},shadowMapSize:{}}},spotLightMap:{value:[]},spotShadowMap:{value:[]},spotLightMatrix:{value:[]},pointLights:{value:[],properties:{color:{},position:{},decay:{},distance:{}}},pointLightShadows:{value:[],properties:{shadowIntensity:1,shadowBias:{},shadowNormalBias:{},shadowRadius:{},shadowMapSize:{},shadowCameraNear:{},shadowCameraFar:{}}},pointShadowMap:{value:[]},pointShadowMatrix:{value:[]},hemisphereLights:{value:[],properties:{direction:{},skyColor:{},groundColor:{}}},rectAreaLights:{value:[],properties:{color:{},position:{},width:{},height:{}}},ltc_1:{value:null},ltc_2:{value:null}},points:{diffuse:{value:new ge(16777215)},opacity:{value:1},size:{value:1},scale:{value:1},map:{value:null},alphaMap:{value:null},alphaMapTransform:{value:new te},alphaTest:{value:0},uvTransform:{value:new te}},sprite:{diffuse:{value:new ge(16777215)},opacity:{value:1},center:{value:new ie(.5,.5)},rotation:{value:0},map:{value:null},mapTransform:{value:new te},alphaMap:{value:null},alphaMapTransform:{value:new te},alphaTest:{value:0}}},_i={basic:{uniforms:vn([yt.common,yt.specularmap,yt.envmap,yt.aomap,yt.lightmap,yt.fog]),vertexShader:ne.meshbasic_vert,fragmentShader:ne.meshbasic_frag},lambert:{uniforms:vn([yt.common,yt.specularmap,yt.envmap,yt.aomap,yt.lightmap,yt.emissivemap,yt.bumpmap,yt.normalmap,yt.displacementmap,yt.fog,yt.lights,{emissive:{value:new ge(0)}}]),vertexShader:ne.meshlambert_vert,fragmentShader:ne.meshlambert_frag},phong:{uniforms:vn([yt.common,yt.specularmap,yt.envmap,yt.aomap,yt.lightmap,yt.emissivemap,yt.bumpmap,yt.normalmap,yt.displacementmap,yt.fog,yt.lights,{emissive:{value:new ge(0)},specular:{value:new ge(1118481)},shininess:{value:30}}]),vertexShader:ne.meshphong_vert,fragmentShader:ne.meshphong_frag},standard:{uniforms:vn([yt.common,yt.envmap,yt.aomap,yt.lightmap,yt.emissivemap,yt.bumpmap,yt.normalmap,yt.displacementmap,yt.roughnessmap,yt.metalnessmap,yt.fog,yt.lights,{emissive:{value:new ge(0)},roughness:{value:1},metalness:{value:0},envMapIntensity:{value:1}}]),vertexShader:ne.meshphysical_vert,fragmentShader:ne.meshphysical_frag},toon:{uniforms:vn([yt.common,yt.aomap,yt.lightmap,yt.emissivemap,yt.bumpmap,yt.normalmap,yt.displacementmap,yt.gradientmap,yt.fog,yt.lights,{emissive:{value:new ge(0)}}]),vertexShader:ne.meshtoon_vert,fragmentShader:ne.meshtoon_frag},matcap:{uniforms:vn([yt.common,yt.bumpmap,yt.normalmap,yt.displacementmap,yt.fog,{matcap:{value:null}}]),vertexShader:ne.meshmatcap_vert,fragmentShader:ne.meshmatcap_frag},points:{uniforms:vn([yt.points,yt.fog]),vertexShader:ne.points_vert,fragmentShader:ne.points_frag},dashed:{uniforms:vn([yt.common,yt.fog,{scale:{value:1},dashSize:{value:1},totalSize:{value:2}}]),vertexShader:ne.linedashed_vert,fragmentShader:ne.linedashed_frag},depth:{uniforms:vn([yt.common,yt.displacementmap]),vertexShader:ne.depth_vert,fragmentShader:ne.depth_frag},normal:{uniforms:vn([yt.common,yt.bumpmap,yt.normalmap,yt.displacementmap,{opacity:{value:1}}]),vertexShader:ne.meshnormal_vert,fragmentShader:ne.meshnormal_frag},sprite:{uniforms:vn([yt.sprite,yt.fog]),vertexShader:ne.sprite_vert,fragmentShader:ne.sprite_frag},background:{uniforms:{uvTransform:{value:new te},t2D:{value:null},backgroundIntensity:{value:1}},vertexShader:ne.background_vert,fragmentShader:ne.background_frag},backgroundCube:{uniforms:{envMap:{value:null},flipEnvMap:{value:-1},backgroundBlurriness:{value:0},backgroundIntensity:{value:1},backgroundRotation:{value:new te}},vertexShader:ne.backgroundCube_vert,fragmentShader:ne.backgroundCube_frag},cube:{uniforms:{tCube:{value:null},tFlip:{value:-1},opacity:{value:1}},vertexShader:ne.cube_vert,fragmentShader:ne.cube_frag},equirect:{uniforms:{tEquirect:{value:null}},vertexShader:ne.equirect_vert,fragmentShader:ne.equirect_frag},distanceRGBA:{uniforms:vn([yt.common,yt.displacementmap,{referencePosition:{value:new H},nearDistance:{value:1},farDistance:{value:1e3}}]),vertexShader:ne.distanceRGBA_vert,fragmentShader:ne.distanceRGBA_frag},shadow:{uniforms:vn([yt.lights,yt.fog,{color:{value:new ge(0)},opacity:{value:1}}]),vertexShader:ne.shadow_vert,fragmentShader:ne.shadow_frag}};_i.physical={uniforms:vn([_i.standard.uniforms,{clearcoat:{value:0},clearcoatMap:{value:null},clearcoatMapTransform:{value:new te},clearcoatNormalMap:{value:null},clearcoatNormalMapTransform:{value:new te},clearcoatNormalScale:{value:new ie(1,1)},clearcoatRoughness:{value:0},clearcoatRoughnessMap:{value:null},clearcoatRoughnessMapTransform:{value:new te},dispersion:{value:0},iridescence:{value:0},iridescenceMap:{value:null},iridescenceMapTransform:{value:new te},iridescenceIOR:{value:1.3},iridescenceThicknessMinimum:{value:100},iridescenceThicknessMaximum:{value:400},iridescenceThicknessMap:{value:null},iridescenceThicknessMapTransform:{value:new te},sheen:{value:0},sheenColor:{value:new ge(0)},sheenColorMap:{value:null},sheenColorMapTransform:{value:new te},sheenRoughness:{value:1},sheenRoughnessMap:{value:null},sheenRoughnessMapTransform:{value:new te},transmission:{value:0},transmissionMap:{value:null},transmissionMapTransform:{value:new te},transmissionSamplerSize:{value:new ie},transmissionSamplerMap:{value:null},thickness:{value:0},thicknessMap:{value:null},thicknessMapTransform:{value:new te},attenuationDistance:{value:0},attenuationColor:{value:new ge(0)},specularColor:{value:new ge(1,1,1)},specularColorMap:{value:null},specularColorMapTransform:{value:new te},specularIntensity:{value:1},specularIntensityMap:{value:null},specularIntensityMapTransform:{value:new te},anisotropyVector:{value:new ie},anisotropyMap:{value:null},anisotropyMapTransform:{value:new te}}]),vertexShader:ne.meshphysical_vert,fragmentShader:ne.meshphysical_frag};var qo={r:0,b:0,g:0},_s=new Bi,gx=new We;function _x(i,t,e,n,s,r,o){let a=new ge(0),l=r===!0?0:1,c,u,f=null,h=0,p=null;function _(A){let w=A.isScene===!0?A.background:null;return w&&w.isTexture&&(w=(A.backgroundBlurriness>0?e:t).get(w)),w}function x(A){let w=!1,b=_(A);b===null?d(a,l):b&&b.isColor&&(d(b,1),w=!0);let D=i.xr.getEnvironmentBlendMode();D==="additive"?n.buffers.color.setClear(0,0,0,1,o):D==="alpha-blend"&&n.buffers.color.setClear(0,0,0,0,o),(i.autoClear||w)&&(n.buffers.depth.setTest(!0),n.buffers.depth.setMask(!0),n.buffers.color.setMask(!0),i.clear(i.autoClearColor,i.autoClearDepth,i.autoClearStencil))}function m(A,w){let b=_(w);b&&(b.isCubeTexture||b.mapping===Aa)?(u===void 0&&(u=new Ln(new ao(1,1,1),new Nn({name:"BackgroundCubeMaterial",uniforms:Er(_i.backgroundCube.uniforms),vertexShader:_i.backgroundCube.vertexShader,fragmentShader:_i.backgroundCube.fragmentShader,side:wn,depthTest:!1,depthWrite:!1,fog:!1})),u.geometry.deleteAttribute("normal"),u.geometry.deleteAttribute("uv"),u.onBeforeRender=function(D,L,I){this.matrixWorld.copyPosition(I.matrixWorld)},Object.defineProperty(u.material,"envMap",{get:function(){return this.uniforms.envMap.value}}),s.update(u)),_s.copy(w.backgroundRotation),_s.x*=-1,_s.y*=-1,_s.z*=-1,b.isCubeTexture&&b.isRenderTargetTexture===!1&&(_s.y*=-1,_s.z*=-1),u.material.uniforms.envMap.value=b,u.material.uniforms.flipEnvMap.value=b.isCubeTexture&&b.isRenderTargetTexture===!1?-1:1,u.material.uniforms.backgroundBlurriness.value=w.backgroundBlurriness,u.material.uniforms.backgroundIntensity.value=w.backgroundIntensity,u.material.uniforms.backgroundRotation.value.setFromMatrix4(gx.makeRotationFromEuler(_s)),u.material.toneMapped=de.getTransfer(b.colorSpace)!==Ee,(f!==b||h!==b.version||p!==i.toneMapping)&&(u.material.needsUpdate=!0,f=b,h=b.version,p=i.toneMapping),u.layers.enableAll(),A.unshift(u,u.geometry,u.material,0,0,null)):b&&b.isTexture&&(c===void 0&&(c=new Ln(new ga(2,2),new Nn({name:"BackgroundMaterial",uniforms:Er(_i.background.uniforms),vertexShader:_i.background.vertexShader,fragmentShader:_i.background.fragmentShader,side:is,depthTest:!1,depthWrite:!1,fog:!1})),c.geometry.deleteAttribute("normal"),Object.defineProperty(c.material,"map",{get:function(){return this.uniforms.t2D.value}}),s.update(c)),c.material.uniforms.t2D.value=b,c.material.uniforms.backgroundIntensity.value=w.backgroundIntensity,c.material.toneMapped=de.getTransfer(b.colorSpace)!==Ee,b.matrixAutoUpdate===!0&&b.updateMatrix(),c.material.uniforms.uvTransform.value.copy(b.matrix),(f!==b||h!==b.version||p!==i.toneMapping)&&(c.material.needsUpdate=!0,f=b,h=b.version,p=i.toneMapping),c.layers.enableAll(),A.unshift(c,c.geometry,c.material,0,0,null))}function d(A,w){A.getRGB(qo,$f(i)),n.buffers.color.setClear(qo.r,qo.g,qo.b,w,o)}return{getClearColor:function(){return a},setClearColor:function(A,w=1){a.set(A),l=w,d(a,l)},getClearAlpha:function(){return l},setClearAlpha:function(A){l=A,d(a,l)},render:x,addToRenderList:m}}function xx(i,t){let e=i.getParameter(i.MAX_VERTEX_ATTRIBS),n={},s=h(null),r=s,o=!1;function a(M,C,W,V,Y){let j=!1,Z=f(V,W,C);r!==Z&&(r=Z,c(r.object)),j=p(M,V,W,Y),j&&_(M,V,W,Y),Y!==null&&t.update(Y,i.ELEMENT_ARRAY_BUFFER),(j||o)&&(o=!1,b(M,C,W,V),Y!==null&&i.bindBuffer(i.ELEMENT_ARRAY_BUFFER,t.get(Y).buffer))}function l(){return i.createVertexArray()}function c(M){return i.bindVertexArray(M)}function u(M){return i.deleteVertexArray(M)}function f(M,C,W){let V=W.wireframe===!0,Y=n[M.id];Y===void 0&&(Y={},n[M.id]=Y);let j=Y[C.id];j===void 0&&(j={},Y[C.id]=j);let Z=j[V];return Z===void 0&&(Z=h(l()),j[V]=Z),Z}function h(M){let C=[],W=[],V=[];for(let Y=0;Y<e;Y++)C[Y]=0,W[Y]=0,V[Y]=0;return{geometry:null,program:null,wireframe:!1,newAttributes:C,enabledAttributes:W,attributeDivisors:V,object:M,attributes:{},index:null}}function p(M,C,W,V){let Y=r.attributes,j=C.attributes,Z=0,et=W.getAttributes();for(let K in et)if(et[K].location>=0){let ot=Y[K],mt=j[K];if(mt===void 0&&(K==="instanceMatrix"&&M.instanceMatrix&&(mt=M.instanceMatrix),K==="instanceColor"&&M.instanceColor&&(mt=M.instanceColor)),ot===void 0||ot.attribute!==mt||mt&&ot.data!==mt.data)return!0;Z++}return r.attributesNum!==Z||r.index!==V}function _(M,C,W,V){let Y={},j=C.attributes,Z=0,et=W.getAttributes();for(let K in et)if(et[K].location>=0){let ot=j[K];ot===void 0&&(K==="instanceMatrix"&&M.instanceMatrix&&(ot=M.instanceMatrix),K==="instanceColor"&&M.instanceColor&&(ot=M.instanceColor));let mt={};mt.attribute=ot,ot&&ot.data&&(mt.data=ot.data),Y[K]=mt,Z++}r.attributes=Y,r.attributesNum=Z,r.index=V}function x(){let M=r.newAttributes;for(let C=0,W=M.length;C<W;C++)M[C]=0}function m(M){d(M,0)}function d(M,C){let W=r.newAttributes,V=r.enabledAttributes,Y=r.attributeDivisors;W[M]=1,V[M]===0&&(i.enableVertexAttribArray(M),V[M]=1),Y[M]!==C&&(i.vertexAttribDivisor(M,C),Y[M]=C)}function A(){let M=r.newAttributes,C=r.enabledAttributes;for(let W=0,V=C.length;W<V;W++)C[W]!==M[W]&&(i.disableVertexAttribArray(W),C[W]=0)}function w(M,C,W,V,Y,j,Z){Z===!0?i.vertexAttribIPointer(M,C,W,Y,j):i.vertexAttribPointer(M,C,W,V,Y,j)}function b(M,C,W,V){x();let Y=V.attributes,j=W.getAttributes(),Z=C.defaultAttributeValues;for(let et in j){let K=j[et];if(K.location>=0){let ht=Y[et];if(ht===void 0&&(et==="instanceMatrix"&&M.instanceMatrix&&(ht=M.instanceMatrix),et==="instanceColor"&&M.instanceColor&&(ht=M.instanceColor)),ht!==void 0){let ot=ht.normalized,mt=ht.itemSize,dt=t.get(ht);if(dt===void 0)continue;let Gt=dt.buffer,$=dt.type,ct=dt.bytesPerElement,It=$===i.INT||$===i.UNSIGNED_INT||ht.gpuType===rh;if(ht.isInterleavedBufferAttribute){let ut=ht.data,Dt=ut.stride,Ht=ht.offset;if(ut.isInstancedInterleavedBuffer){for(let zt=0;zt<K.locationSize;zt++)d(K.location+zt,ut.meshPerAttribute);M.isInstancedMesh!==!0&&V._maxInstanceCount===void 0&&(V._maxInstanceCount=ut.meshPerAttribute*ut.count)}else for(let zt=0;zt<K.locationSize;zt++)m(K.location+zt);i.bindBuffer(i.ARRAY_BUFFER,Gt);for(let zt=0;zt<K.locationSize;zt++)w(K.location+zt,mt/K.locationSize,$,ot,Dt*ct,(Ht+mt/K.locationSize*zt)*ct,It)}else{if(ht.isInstancedBufferAttribute){for(let ut=0;ut<K.locationSize;ut++)d(K.location+ut,ht.meshPerAttribute);M.isInstancedMesh!==!0&&V._maxInstanceCount===void 0&&(V._maxInstanceCount=ht.meshPerAttribute*ht.count)}else for(let ut=0;ut<K.locationSize;ut++)m(K.location+ut);i.bindBuffer(i.ARRAY_BUFFER,Gt);for(let ut=0;ut<K.locationSize;ut++)w(K.location+ut,mt/K.locationSize,$,ot,mt*ct,mt/K.locationSize*ut*ct,It)}}else if(Z!==void 0){let ot=Z[et];if(ot!==void 0)switch(ot.length){case 2:i.vertexAttrib2fv(K.location,ot);break;case 3:i.vertexAttrib3fv(K.location,ot);break;case 4:i.vertexAttrib4fv(K.location,ot);break;default:i.vertexAttrib1fv(K.location,ot)}}}}A()}function D(){U();for(let M in n){let C=n[M];for(let W in C){let V=C[W];for(let Y in V)u(V[Y].object),delete V[Y];delete C[W]}delete n[M]}}function L(M){if(n[M.id]===void 0)return;let C=n[M.id];for(let W in C){let V=C[W];for(let Y in V)u(V[Y].object),delete V[Y];delete C[W]}delete n[M.id]}function I(M){for(let C in n){let W=n[C];if(W[M.id]===void 0)continue;let V=W[M.id];for(let Y in V)u(V[Y].object),delete V[Y];delete W[M.id]}}function U(){E(),o=!0,r!==s&&(r=s,c(r.object))}function E(){s.geometry=null,s.program=null,s.wireframe=!1}return{setup:a,reset:U,resetDefaultState:E,dispose:D,releaseStatesOfGeometry:L,releaseStatesOfProgram:I,initAttributes:x,enableAttribute:m,disableUnusedAttributes:A}}function yx(i,t,e){let n;function s(c){n=c}function r(c,u){i.drawArrays(n,c,u),e.update(u,n,1)}function o(c,u,f){f!==0&&(i.drawArraysInstanced(n,c,u,f),e.update(u,n,f))}function a(c,u,f){if(f===0)return;t.get("WEBGL_multi_draw").multiDrawArraysWEBGL(n,c,0,u,0,f);let p=0;for(let _=0;_<f;_++)p+=u[_];e.update(p,n,1)}function l(c,u,f,h){if(f===0)return;let p=t.get("WEBGL_multi_draw");if(p===null)for(let _=0;_<c.length;_++)o(c[_],u[_],h[_]);else{p.multiDrawArraysInstancedWEBGL(n,c,0,u,0,h,0,f);let _=0;for(let x=0;x<f;x++)_+=u[x]*h[x];e.update(_,n,1)}}this.setMode=s,this.render=r,this.renderInstances=o,this.renderMultiDraw=a,this.renderMultiDrawInstances=l}function vx(i,t,e,n){let s;function r(){if(s!==void 0)return s;if(t.has("EXT_texture_filter_anisotropic")===!0){let I=t.get("EXT_texture_filter_anisotropic");s=i.getParameter(I.MAX_TEXTURE_MAX_ANISOTROPY_EXT)}else s=0;return s}function o(I){return!(I!==si&&n.convert(I)!==i.getParameter(i.IMPLEMENTATION_COLOR_READ_FORMAT))}function a(I){let U=I===ho&&(t.has("EXT_color_buffer_half_float")||t.has("EXT_color_buffer_float"));return!(I!==Ni&&n.convert(I)!==i.getParameter(i.IMPLEMENTATION_COLOR_READ_TYPE)&&I!==Li&&!U)}function l(I){if(I==="highp"){if(i.getShaderPrecisionFormat(i.VERTEX_SHADER,i.HIGH_FLOAT).precision>0&&i.getShaderPrecisionFormat(i.FRAGMENT_SHADER,i.HIGH_FLOAT).precision>0)return"highp";I="mediump"}return I==="mediump"&&i.getShaderPrecisionFormat(i.VERTEX_SHADER,i.MEDIUM_FLOAT).precision>0&&i.getShaderPrecisionFormat(i.FRAGMENT_SHADER,i.MEDIUM_FLOAT).precision>0?"mediump":"lowp"}let c=e.precision!==void 0?e.precision:"highp",u=l(c);u!==c&&(console.warn("THREE.WebGLRenderer:",c,"not supported, using",u,"instead."),c=u);let f=e.logarithmicDepthBuffer===!0,h=e.reverseDepthBuffer===!0&&t.has("EXT_clip_control"),p=i.getParameter(i.MAX_TEXTURE_IMAGE_UNITS),_=i.getParameter(i.MAX_VERTEX_TEXTURE_IMAGE_UNITS),x=i.getParameter(i.MAX_TEXTURE_SIZE),m=i.getParameter(i.MAX_CUBE_MAP_TEXTURE_SIZE),d=i.getParameter(i.MAX_VERTEX_ATTRIBS),A=i.getParameter(i.MAX_VERTEX_UNIFORM_VECTORS),w=i.getParameter(i.MAX_VARYING_VECTORS),b=i.getParameter(i.MAX_FRAGMENT_UNIFORM_VECTORS),D=_>0,L=i.getParameter(i.MAX_SAMPLES);return{isWebGL2:!0,getMaxAnisotropy:r,getMaxPrecision:l,textureFormatReadable:o,textureTypeReadable:a,precision:c,logarithmicDepthBuffer:f,reverseDepthBuffer:h,maxTextures:p,maxVertexTextures:_,maxTextureSize:x,maxCubemapSize:m,maxAttributes:d,maxVertexUniforms:A,maxVaryings:w,maxFragmentUniforms:b,vertexTextures:D,maxSamples:L}}function Mx(i){let t=this,e=null,n=0,s=!1,r=!1,o=new ni,a=new te,l={value:null,needsUpdate:!1};this.uniform=l,this.numPlanes=0,this.numIntersection=0,this.init=function(f,h){let p=f.length!==0||h||n!==0||s;return s=h,n=f.length,p},this.beginShadows=function(){r=!0,u(null)},this.endShadows=function(){r=!1},this.setGlobalState=function(f,h){e=u(f,h,0)},this.setState=function(f,h,p){let _=f.clippingPlanes,x=f.clipIntersection,m=f.clipShadows,d=i.get(f);if(!s||_===null||_.length===0||r&&!m)r?u(null):c();else{let A=r?0:n,w=A*4,b=d.clippingState||null;l.value=b,b=u(_,h,w,p);for(let D=0;D!==w;++D)b[D]=e[D];d.clippingState=b,this.numIntersection=x?this.numPlanes:0,this.numPlanes+=A}};function c(){l.value!==e&&(l.value=e,l.needsUpdate=n>0),t.numPlanes=n,t.numIntersection=0}function u(f,h,p,_){let x=f!==null?f.length:0,m=null;if(x!==0){if(m=l.value,_!==!0||m===null){let d=p+x*4,A=h.matrixWorldInverse;a.getNormalMatrix(A),(m===null||m.length<d)&&(m=new Float32Array(d));for(let w=0,b=p;w!==x;++w,b+=4)o.copy(f[w]).applyMatrix4(A,a),o.normal.toArray(m,b),m[b+3]=o.constant}l.value=m,l.needsUpdate=!0}return t.numPlanes=x,t.numIntersection=0,m}}function Sx(i){let t=new WeakMap;function e(o,a){return a===Ql?o.mapping=yr:a===tc&&(o.mapping=vr),o}function n(o){if(o&&o.isTexture){let a=o.mapping;if(a===Ql||a===tc)if(t.has(o)){let l=t.get(o).texture;return e(l,o.mapping)}else{let l=o.image;if(l&&l.height>0){let c=new Uc(l.height);return c.fromEquirectangularTexture(i,o),t.set(o,c),o.addEventListener("dispose",s),e(c.texture,o.mapping)}else return null}}return o}function s(o){let a=o.target;a.removeEventListener("dispose",s);let l=t.get(a);l!==void 0&&(t.delete(a),l.dispose())}function r(){t=new WeakMap}return{get:n,dispose:r}}var lo=class extends da{constructor(t=-1,e=1,n=1,s=-1,r=.1,o=2e3){super(),this.isOrthographicCamera=!0,this.type="OrthographicCamera",this.zoom=1,this.view=null,this.left=t,this.right=e,this.top=n,this.bottom=s,this.near=r,this.far=o,this.updateProjectionMatrix()}copy(t,e){return super.copy(t,e),this.left=t.left,this.right=t.right,this.top=t.top,this.bottom=t.bottom,this.near=t.near,this.far=t.far,this.zoom=t.zoom,this.view=t.view===null?null:Object.assign({},t.view),this}setViewOffset(t,e,n,s,r,o){this.view===null&&(this.view={enabled:!0,fullWidth:1,fullHeight:1,offsetX:0,offsetY:0,width:1,height:1}),this.view.enabled=!0,this.view.fullWidth=t,this.view.fullHeight=e,this.view.offsetX=n,this.view.offsetY=s,this.view.width=r,this.view.height=o,this.updateProjectionMatrix()}clearViewOffset(){this.view!==null&&(this.view.enabled=!1),this.updateProjectionMatrix()}updateProjectionMatrix(){let t=(this.right-this.left)/(2*this.zoom),e=(this.top-this.bottom)/(2*this.zoom),n=(this.right+this.left)/2,s=(this.top+this.bottom)/2,r=n-t,o=n+t,a=s+e,l=s-e;if(this.view!==null&&this.view.enabled){let c=(this.right-this.left)/this.view.fullWidth/this.zoom,u=(this.top-this.bottom)/this.view.fullHeight/this.zoom;r+=c*this.view.offsetX,o=r+c*this.view.width,a-=u*this.view.offsetY,l=a-u*this.view.height}this.projectionMatrix.makeOrthographic(r,o,a,l,this.near,this.far,this.coordinateSystem),this.projectionMatrixInverse.copy(this.projectionMatrix).invert()}toJSON(t){let e=super.toJSON(t);return e.object.zoom=this.zoom,e.object.left=this.left,e.object.right=this.right,e.object.top=this.top,e.object.bottom=this.bottom,e.object.near=this.near,e.object.far=this.far,this.view!==null&&(e.object.view=Object.assign({},this.view)),e}},fr=4,nf=[.125,.215,.35,.446,.526,.582],Ss=20,Fl=new lo,sf=new ge,Bl=null,kl=0,zl=0,Vl=!1,ys=(1+Math.sqrt(5))/2,hr=1/ys,rf=[new H(-ys,hr,0),new H(ys,hr,0),new H(-hr,0,ys),new H(hr,0,ys),new H(0,ys,-hr),new H(0,ys,hr),new H(-1,1,-1),new H(1,1,-1),new H(-1,1,1),new H(1,1,1)],_a=class{constructor(t){this._renderer=t,this._pingPongRenderTarget=null,this._lodMax=0,this._cubeSize=0,this._lodPlanes=[],this._sizeLods=[],this._sigmas=[],this._blurMaterial=null,this._cubemapMaterial=null,this._equirectMaterial=null,this._compileMaterial(this._blurMaterial)}fromScene(t,e=0,n=.1,s=100){Bl=this._renderer.getRenderTarget(),kl=this._renderer.getActiveCubeFace(),zl=this._renderer.getActiveMipmapLevel(),Vl=this._renderer.xr.enabled,this._renderer.xr.enabled=!1,this._setSize(256);let r=this._allocateTargets();return r.depthBuffer=!0,this._sceneToCubeUV(t,n,s,r),e>0&&this._blur(r,0,0,e),this._applyPMREM(r),this._cleanup(r),r}fromEquirectangular(t,e=null){return this._fromTexture(t,e)}fromCubemap(t,e=null){return this._fromTexture(t,e)}compileCubemapShader(){this._cubemapMaterial===null&&(this._cubemapMaterial=lf(),this._compileMaterial(this._cubemapMaterial))}compileEquirectangularShader(){this._equirectMaterial===null&&(this._equirectMaterial=af(),this._compileMaterial(this._equirectMaterial))}dispose(){this._dispose(),this._cubemapMaterial!==null&&this._cubemapMaterial.dispose(),this._equirectMaterial!==null&&this._equirectMaterial.dispose()}_setSize(t){this._lodMax=Math.floor(Math.log2(t)),this._cubeSize=Math.pow(2,this._lodMax)}_dispose(){this._blurMaterial!==null&&this._blurMaterial.dispose(),this._pingPongRenderTarget!==null&&this._pingPongRenderTarget.dispose();for(let t=0;t<this._lodPlanes.length;t++)this._lodPlanes[t].dispose()}_cleanup(t){this._renderer.setRenderTarget(Bl,kl,zl),this._renderer.xr.enabled=Vl,t.scissorTest=!1,$o(t,0,0,t.width,t.height)}_fromTexture(t,e){t.mapping===yr||t.mapping===vr?this._setSize(t.image.length===0?16:t.image[0].width||t.image[0].image.width):this._setSize(t.image.width/4),Bl=this._renderer.getRenderTarget(),kl=this._renderer.getActiveCubeFace(),zl=this._renderer.getActiveMipmapLevel(),Vl=this._renderer.xr.enabled,this._renderer.xr.enabled=!1;let n=e||this._allocateTargets();return this._textureToCubeUV(t,n),this._applyPMREM(n),this._cleanup(n),n}_allocateTargets(){let t=3*Math.max(this._cubeSize,112),e=4*this._cubeSize,n={magFilter:Xn,minFilter:Xn,generateMipmaps:!1,type:ho,format:si,colorSpace:ss,depthBuffer:!1},s=of(t,e,n);if(this._pingPongRenderTarget===null||this._pingPongRenderTarget.width!==t||this._pingPongRenderTarget.height!==e){this._pingPongRenderTarget!==null&&this._dispose(),this._pingPongRenderTarget=of(t,e,n);let{_lodMax:r}=this;({sizeLods:this._sizeLods,lodPlanes:this._lodPlanes,sigmas:this._sigmas}=bx(r)),this._blurMaterial=wx(r,t,e)}return s}_compileMaterial(t){let e=new Ln(this._lodPlanes[0],t);this._renderer.compile(e,Fl)}_sceneToCubeUV(t,e,n,s){let a=new In(90,1,e,n),l=[1,-1,1,1,1,1],c=[1,1,1,-1,-1,-1],u=this._renderer,f=u.autoClear,h=u.toneMapping;u.getClearColor(sf),u.toneMapping=ns,u.autoClear=!1;let p=new ha({name:"PMREM.Background",side:wn,depthWrite:!1,depthTest:!1}),_=new Ln(new ao,p),x=!1,m=t.background;m?m.isColor&&(p.color.copy(m),t.background=null,x=!0):(p.color.copy(sf),x=!0);for(let d=0;d<6;d++){let A=d%3;A===0?(a.up.set(0,l[d],0),a.lookAt(c[d],0,0)):A===1?(a.up.set(0,0,l[d]),a.lookAt(0,c[d],0)):(a.up.set(0,l[d],0),a.lookAt(0,0,c[d]));let w=this._cubeSize;$o(s,A*w,d>2?w:0,w,w),u.setRenderTarget(s),x&&u.render(_,a),u.render(t,a)}_.geometry.dispose(),_.material.dispose(),u.toneMapping=h,u.autoClear=f,t.background=m}_textureToCubeUV(t,e){let n=this._renderer,s=t.mapping===yr||t.mapping===vr;s?(this._cubemapMaterial===null&&(this._cubemapMaterial=lf()),this._cubemapMaterial.uniforms.flipEnvMap.value=t.isRenderTargetTexture===!1?-1:1):this._equirectMaterial===null&&(this._equirectMaterial=af());let r=s?this._cubemapMaterial:this._equirectMaterial,o=new Ln(this._lodPlanes[0],r),a=r.uniforms;a.envMap.value=t;let l=this._cubeSize;$o(e,0,0,3*l,2*l),n.setRenderTarget(e),n.render(o,Fl)}_applyPMREM(t){let e=this._renderer,n=e.autoClear;e.autoClear=!1;let s=this._lodPlanes.length;for(let r=1;r<s;r++){let o=Math.sqrt(this._sigmas[r]*this._sigmas[r]-this._sigmas[r-1]*this._sigmas[r-1]),a=rf[(s-r-1)%rf.length];this._blur(t,r-1,r,o,a)}e.autoClear=n}_blur(t,e,n,s,r){let o=this._pingPongRenderTarget;this._halfBlur(t,o,e,n,s,"latitudinal",r),this._halfBlur(o,t,n,n,s,"longitudinal",r)}_halfBlur(t,e,n,s,r,o,a){let l=this._renderer,c=this._blurMaterial;o!=="latitudinal"&&o!=="longitudinal"&&console.error("blur direction must be either latitudinal or longitudinal!");let u=3,f=new Ln(this._lodPlanes[s],c),h=c.uniforms,p=this._sizeLods[n]-1,_=isFinite(r)?Math.PI/(2*p):2*Math.PI/(2*Ss-1),x=r/_,m=isFinite(r)?1+Math.floor(u*x):Ss;m>Ss&&console.warn(`sigmaRadians, ${r}, is too large and will clip, as it requested ${m} samples when the maximum is set to ${Ss}`);let d=[],A=0;for(let I=0;I<Ss;++I){let U=I/x,E=Math.exp(-U*U/2);d.push(E),I===0?A+=E:I<m&&(A+=2*E)}for(let I=0;I<d.length;I++)d[I]=d[I]/A;h.envMap.value=t.texture,h.samples.value=m,h.weights.value=d,h.latitudinal.value=o==="latitudinal",a&&(h.poleAxis.value=a);let{_lodMax:w}=this;h.dTheta.value=_,h.mipInt.value=w-n;let b=this._sizeLods[s],D=3*b*(s>w-fr?s-w+fr:0),L=4*(this._cubeSize-b);$o(e,D,L,3*b,2*b),l.setRenderTarget(e),l.render(f,Fl)}};function bx(i){let t=[],e=[],n=[],s=i,r=i-fr+1+nf.length;for(let o=0;o<r;o++){let a=Math.pow(2,s);e.push(a);let l=1/a;o>i-fr?l=nf[o-i+fr-1]:o===0&&(l=0),n.push(l);let c=1/(a-2),u=-c,f=1+c,h=[u,u,f,u,f,f,u,u,f,f,u,f],p=6,_=6,x=3,m=2,d=1,A=new Float32Array(x*_*p),w=new Float32Array(m*_*p),b=new Float32Array(d*_*p);for(let L=0;L<p;L++){let I=L%3*2/3-1,U=L>2?0:-1,E=[I,U,0,I+2/3,U,0,I+2/3,U+1,0,I,U,0,I+2/3,U+1,0,I,U+1,0];A.set(E,x*_*L),w.set(h,m*_*L);let M=[L,L,L,L,L,L];b.set(M,d*_*L)}let D=new ai;D.setAttribute("position",new an(A,x)),D.setAttribute("uv",new an(w,m)),D.setAttribute("faceIndex",new an(b,d)),t.push(D),s>fr&&s--}return{lodPlanes:t,sizeLods:e,sigmas:n}}function of(i,t,e){let n=new Fi(i,t,e);return n.texture.mapping=Aa,n.texture.name="PMREM.cubeUv",n.scissorTest=!0,n}function $o(i,t,e,n,s){i.viewport.set(t,e,n,s),i.scissor.set(t,e,n,s)}function wx(i,t,e){let n=new Float32Array(Ss),s=new H(0,1,0);return new Nn({name:"SphericalGaussianBlur",defines:{n:Ss,CUBEUV_TEXEL_WIDTH:1/t,CUBEUV_TEXEL_HEIGHT:1/e,CUBEUV_MAX_MIP:`${i}.0`},uniforms:{envMap:{value:null},samples:{value:1},weights:{value:n},latitudinal:{value:!1},dTheta:{value:0},mipInt:{value:0},poleAxis:{value:s}},vertexShader:fh(),fragmentShader:`

			precision mediump float;
			precision mediump int;

			varying vec3 vOutputDirection;

			uniform sampler2D envMap;
			uniform int samples;
			uniform float weights[ n ];
			uniform bool latitudinal;
			uniform float dTheta;
			uniform float mipInt;
			uniform vec3 poleAxis;

			#define ENVMAP_TYPE_CUBE_UV
			#include <cube_uv_reflection_fragment>

			vec3 getSample( float theta, vec3 axis ) {

				float cosTheta = cos( theta );
				// Rodrigues' axis-angle rotation
				vec3 sampleDirection = vOutputDirection * cosTheta
					+ cross( axis, vOutputDirection ) * sin( theta )
					+ axis * dot( axis, vOutputDirection ) * ( 1.0 - cosTheta );

				return bilinearCubeUV( envMap, sampleDirection, mipInt );

			}

			void main() {

				vec3 axis = latitudinal ? poleAxis : cross( poleAxis, vOutputDirection );

				if ( all( equal( axis, vec3( 0.0 ) ) ) ) {

					axis = vec3( vOutputDirection.z, 0.0, - vOutputDirection.x );

				}

				axis = normalize( axis );

				gl_FragColor = vec4( 0.0, 0.0, 0.0, 1.0 );
				gl_FragColor.rgb += weights[ 0 ] * getSample( 0.0, axis );

				for ( int i = 1; i < n; i++ ) {

					if ( i >= samples ) {

						break;

					}

					float theta = dTheta * float( i );
					gl_FragColor.rgb += weights[ i ] * getSample( -1.0 * theta, axis );
					gl_FragColor.rgb += weights[ i ] * getSample( theta, axis );

				}

			}
		`,blending:es,depthTest:!1,depthWrite:!1})}function af(){return new Nn({name:"EquirectangularToCubeUV",uniforms:{envMap:{value:null}},vertexShader:fh(),fragmentShader:`

			precision mediump float;
			precision mediump int;

			varying vec3 vOutputDirection;

			uniform sampler2D envMap;

			#include <common>

			void main() {

				vec3 outputDirection = normalize( vOutputDirection );
				vec2 uv = equirectUv( outputDirection );

				gl_FragColor = vec4( texture2D ( envMap, uv ).rgb, 1.0 );

			}
		`,blending:es,depthTest:!1,depthWrite:!1})}function lf(){return new Nn({name:"CubemapToCubeUV",uniforms:{envMap:{value:null},flipEnvMap:{value:-1}},vertexShader:fh(),fragmentShader:`

			precision mediump float;
			precision mediump int;

			uniform float flipEnvMap;

			varying vec3 vOutputDirection;

			uniform samplerCube envMap;

			void main() {

				gl_FragColor = textureCube( envMap, vec3( flipEnvMap * vOutputDirection.x, vOutputDirection.yz ) );

			}
		`,blending:es,depthTest:!1,depthWrite:!1})}function fh(){return`

		precision mediump float;
		precision mediump int;

		attribute float faceIndex;

		varying vec3 vOutputDirection;

		// RH coordinate system; PMREM face-indexing convention
		vec3 getDirection( vec2 uv, float face ) {

			uv = 2.0 * uv - 1.0;

			vec3 direction = vec3( uv, 1.0 );

			if ( face == 0.0 ) {

				direction = direction.zyx; // ( 1, v, u ) pos x

			} else if ( face == 1.0 ) {

				direction = direction.xzy;
				direction.xz *= -1.0; // ( -u, 1, -v ) pos y

			} else if ( face == 2.0 ) {

				direction.x *= -1.0; // ( -u, v, 1 ) pos z

			} else if ( face == 3.0 ) {

				direction = direction.zyx;
				direction.xz *= -1.0; // ( -1, v, -u ) neg x

			} else if ( face == 4.0 ) {

				direction = direction.xzy;
				direction.xy *= -1.0; // ( -u, -1, v ) neg y

			} else if ( face == 5.0 ) {

				direction.z *= -1.0; // ( u, v, -1 ) neg z

			}

			return direction;

		}

		void main() {

			vOutputDirection = getDirection( uv, faceIndex );
			gl_Position = vec4( position, 1.0 );

		}
	`}function Ex(i){let t=new WeakMap,e=null;function n(a){if(a&&a.isTexture){let l=a.mapping,c=l===Ql||l===tc,u=l===yr||l===vr;if(c||u){let f=t.get(a),h=f!==void 0?f.texture.pmremVersion:0;if(a.isRenderTargetTexture&&a.pmremVersion!==h)return e===null&&(e=new _a(i)),f=c?e.fromEquirectangular(a,f):e.fromCubemap(a,f),f.texture.pmremVersion=a.pmremVersion,t.set(a,f),f.texture;if(f!==void 0)return f.texture;{let p=a.image;return c&&p&&p.height>0||u&&p&&s(p)?(e===null&&(e=new _a(i)),f=c?e.fromEquirectangular(a):e.fromCubemap(a),f.texture.pmremVersion=a.pmremVersion,t.set(a,f),a.addEventListener("dispose",r),f.texture):null}}}return a}function s(a){let l=0,c=6;for(let u=0;u<c;u++)a[u]!==void 0&&l++;return l===c}function r(a){let l=a.target;l.removeEventListener("dispose",r);let c=t.get(l);c!==void 0&&(t.delete(l),c.dispose())}function o(){t=new WeakMap,e!==null&&(e.dispose(),e=null)}return{get:n,dispose:o}}function Tx(i){let t={};function e(n){if(t[n]!==void 0)return t[n];let s;switch(n){case"WEBGL_depth_texture":s=i.getExtension("WEBGL_depth_texture")||i.getExtension("MOZ_WEBGL_depth_texture")||i.getExtension("WEBKIT_WEBGL_depth_texture");break;case"EXT_texture_filter_anisotropic":s=i.getExtension("EXT_texture_filter_anisotropic")||i.getExtension("MOZ_EXT_texture_filter_anisotropic")||i.getExtension("WEBKIT_EXT_texture_filter_anisotropic");break;case"WEBGL_compressed_texture_s3tc":s=i.getExtension("WEBGL_compressed_texture_s3tc")||i.getExtension("MOZ_WEBGL_compressed_texture_s3tc")||i.getExtension("WEBKIT_WEBGL_compressed_texture_s3tc");break;case"WEBGL_compressed_texture_pvrtc":s=i.getExtension("WEBGL_compressed_texture_pvrtc")||i.getExtension("WEBKIT_WEBGL_compressed_texture_pvrtc");break;default:s=i.getExtension(n)}return t[n]=s,s}return{has:function(n){return e(n)!==null},init:function(){e("EXT_color_buffer_float"),e("WEBGL_clip_cull_distance"),e("OES_texture_float_linear"),e("EXT_color_buffer_half_float"),e("WEBGL_multisampled_render_to_texture"),e("WEBGL_render_shared_exponent")},get:function(n){let s=e(n);return s===null&&to("THREE.WebGLRenderer: "+n+" extension not supported."),s}}}function Ax(i,t,e,n){let s={},r=new WeakMap;function o(f){let h=f.target;h.index!==null&&t.remove(h.index);for(let _ in h.attributes)t.remove(h.attributes[_]);for(let _ in h.morphAttributes){let x=h.morphAttributes[_];for(let m=0,d=x.length;m<d;m++)t.remove(x[m])}h.removeEventListener("dispose",o),delete s[h.id];let p=r.get(h);p&&(t.remove(p),r.delete(h)),n.releaseStatesOfGeometry(h),h.isInstancedBufferGeometry===!0&&delete h._maxInstanceCount,e.memory.geometries--}function a(f,h){return s[h.id]===!0||(h.addEventListener("dispose",o),s[h.id]=!0,e.memory.geometries++),h}function l(f){let h=f.attributes;for(let _ in h)t.update(h[_],i.ARRAY_BUFFER);let p=f.morphAttributes;for(let _ in p){let x=p[_];for(let m=0,d=x.length;m<d;m++)t.update(x[m],i.ARRAY_BUFFER)}}function c(f){let h=[],p=f.index,_=f.attributes.position,x=0;if(p!==null){let A=p.array;x=p.version;for(let w=0,b=A.length;w<b;w+=3){let D=A[w+0],L=A[w+1],I=A[w+2];h.push(D,L,L,I,I,D)}}else if(_!==void 0){let A=_.array;x=_.version;for(let w=0,b=A.length/3-1;w<b;w+=3){let D=w+0,L=w+1,I=w+2;h.push(D,L,L,I,I,D)}}else return;let m=new(Yf(h)?fa:ua)(h,1);m.version=x;let d=r.get(f);d&&t.remove(d),r.set(f,m)}function u(f){let h=r.get(f);if(h){let p=f.index;p!==null&&h.version<p.version&&c(f)}else c(f);return r.get(f)}return{get:a,update:l,getWireframeAttribute:u}}function Cx(i,t,e){let n;function s(h){n=h}let r,o;function a(h){r=h.type,o=h.bytesPerElement}function l(h,p){i.drawElements(n,p,r,h*o),e.update(p,n,1)}function c(h,p,_){_!==0&&(i.drawElementsInstanced(n,p,r,h*o,_),e.update(p,n,_))}function u(h,p,_){if(_===0)return;t.get("WEBGL_multi_draw").multiDrawElementsWEBGL(n,p,0,r,h,0,_);let m=0;for(let d=0;d<_;d++)m+=p[d];e.update(m,n,1)}function f(h,p,_,x){if(_===0)return;let m=t.get("WEBGL_multi_draw");if(m===null)for(let d=0;d<h.length;d++)c(h[d]/o,p[d],x[d]);else{m.multiDrawElementsInstancedWEBGL(n,p,0,r,h,0,x,0,_);let d=0;for(let A=0;A<_;A++)d+=p[A]*x[A];e.update(d,n,1)}}this.setMode=s,this.setIndex=a,this.render=l,this.renderInstances=c,this.renderMultiDraw=u,this.renderMultiDrawInstances=f}function Rx(i){let t={geometries:0,textures:0},e={frame:0,calls:0,triangles:0,points:0,lines:0};function n(r,o,a){switch(e.calls++,o){case i.TRIANGLES:e.triangles+=a*(r/3);break;case i.LINES:e.lines+=a*(r/2);break;case i.LINE_STRIP:e.lines+=a*(r-1);break;case i.LINE_LOOP:e.lines+=a*r;break;case i.POINTS:e.points+=a*r;break;default:console.error("THREE.WebGLInfo: Unknown draw mode:",o);break}}function s(){e.calls=0,e.triangles=0,e.points=0,e.lines=0}return{memory:t,render:e,programs:null,autoReset:!0,reset:s,update:n}}function Px(i,t,e){let n=new WeakMap,s=new Fe;function r(o,a,l){let c=o.morphTargetInfluences,u=a.morphAttributes.position||a.morphAttributes.normal||a.morphAttributes.color,f=u!==void 0?u.length:0,h=n.get(a);if(h===void 0||h.count!==f){let E=function(){I.dispose(),n.delete(a),a.removeEventListener("dispose",E)};h!==void 0&&h.texture.dispose();let p=a.morphAttributes.position!==void 0,_=a.morphAttributes.normal!==void 0,x=a.morphAttributes.color!==void 0,m=a.morphAttributes.position||[],d=a.morphAttributes.normal||[],A=a.morphAttributes.color||[],w=0;p===!0&&(w=1),_===!0&&(w=2),x===!0&&(w=3);let b=a.attributes.position.count*w,D=1;b>t.maxTextureSize&&(D=Math.ceil(b/t.maxTextureSize),b=t.maxTextureSize);let L=new Float32Array(b*D*4*f),I=new la(L,b,D,f);I.type=Li,I.needsUpdate=!0;let U=w*4;for(let M=0;M<f;M++){let C=m[M],W=d[M],V=A[M],Y=b*D*4*M;for(let j=0;j<C.count;j++){let Z=j*U;p===!0&&(s.fromBufferAttribute(C,j),L[Y+Z+0]=s.x,L[Y+Z+1]=s.y,L[Y+Z+2]=s.z,L[Y+Z+3]=0),_===!0&&(s.fromBufferAttribute(W,j),L[Y+Z+4]=s.x,L[Y+Z+5]=s.y,L[Y+Z+6]=s.z,L[Y+Z+7]=0),x===!0&&(s.fromBufferAttribute(V,j),L[Y+Z+8]=s.x,L[Y+Z+9]=s.y,L[Y+Z+10]=s.z,L[Y+Z+11]=V.itemSize===4?s.w:1)}}h={count:f,texture:I,size:new ie(b,D)},n.set(a,h),a.addEventListener("dispose",E)}if(o.isInstancedMesh===!0&&o.morphTexture!==null)l.getUniforms().setValue(i,"morphTexture",o.morphTexture,e);else{let p=0;for(let x=0;x<c.length;x++)p+=c[x];let _=a.morphTargetsRelative?1:1-p;l.getUniforms().setValue(i,"morphTargetBaseInfluence",_),l.getUniforms().setValue(i,"morphTargetInfluences",c)}l.getUniforms().setValue(i,"morphTargetsTexture",h.texture,e),l.getUniforms().setValue(i,"morphTargetsTextureSize",h.size)}return{update:r}}function Ix(i,t,e,n){let s=new WeakMap;function r(l){let c=n.render.frame,u=l.geometry,f=t.get(l,u);if(s.get(f)!==c&&(t.update(f),s.set(f,c)),l.isInstancedMesh&&(l.hasEventListener("dispose",a)===!1&&l.addEventListener("dispose",a),s.get(l)!==c&&(e.update(l.instanceMatrix,i.ARRAY_BUFFER),l.instanceColor!==null&&e.update(l.instanceColor,i.ARRAY_BUFFER),s.set(l,c))),l.isSkinnedMesh){let h=l.skeleton;s.get(h)!==c&&(h.update(),s.set(h,c))}return f}function o(){s=new WeakMap}function a(l){let c=l.target;c.removeEventListener("dispose",a),e.remove(c.instanceMatrix),c.instanceColor!==null&&e.remove(c.instanceColor)}return{update:r,dispose:o}}var xa=class extends Un{constructor(t,e,n,s,r,o,a,l,c,u=mr){if(u!==mr&&u!==Sr)throw new Error("DepthTexture format must be either THREE.DepthFormat or THREE.DepthStencilFormat");n===void 0&&u===mr&&(n=Es),n===void 0&&u===Sr&&(n=Mr),super(null,s,r,o,a,l,u,n,c),this.isDepthTexture=!0,this.image={width:t,height:e},this.magFilter=a!==void 0?a:Dn,this.minFilter=l!==void 0?l:Dn,this.flipY=!1,this.generateMipmaps=!1,this.compareFunction=null}copy(t){return super.copy(t),this.compareFunction=t.compareFunction,this}toJSON(t){let e=super.toJSON(t);return this.compareFunction!==null&&(e.compareFunction=this.compareFunction),e}},Jf=new Un,cf=new xa(1,1),Kf=new la,jf=new Lc,Qf=new pa,hf=[],uf=[],ff=new Float32Array(16),df=new Float32Array(9),pf=new Float32Array(4);function Cr(i,t,e){let n=i[0];if(n<=0||n>0)return i;let s=t*e,r=hf[s];if(r===void 0&&(r=new Float32Array(s),hf[s]=r),t!==0){n.toArray(r,0);for(let o=1,a=0;o!==t;++o)a+=e,i[o].toArray(r,a)}return r}function $e(i,t){if(i.length!==t.length)return!1;for(let e=0,n=i.length;e<n;e++)if(i[e]!==t[e])return!1;return!0}function Ze(i,t){for(let e=0,n=t.length;e<n;e++)i[e]=t[e]}function Ra(i,t){let e=uf[t];e===void 0&&(e=new Int32Array(t),uf[t]=e);for(let n=0;n!==t;++n)e[n]=i.allocateTextureUnit();return e}function Lx(i,t){let e=this.cache;e[0]!==t&&(i.uniform1f(this.addr,t),e[0]=t)}function Dx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y)&&(i.uniform2f(this.addr,t.x,t.y),e[0]=t.x,e[1]=t.y);else{if($e(e,t))return;i.uniform2fv(this.addr,t),Ze(e,t)}}function Ux(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z)&&(i.uniform3f(this.addr,t.x,t.y,t.z),e[0]=t.x,e[1]=t.y,e[2]=t.z);else if(t.r!==void 0)(e[0]!==t.r||e[1]!==t.g||e[2]!==t.b)&&(i.uniform3f(this.addr,t.r,t.g,t.b),e[0]=t.r,e[1]=t.g,e[2]=t.b);else{if($e(e,t))return;i.uniform3fv(this.addr,t),Ze(e,t)}}function Nx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z||e[3]!==t.w)&&(i.uniform4f(this.addr,t.x,t.y,t.z,t.w),e[0]=t.x,e[1]=t.y,e[2]=t.z,e[3]=t.w);else{if($e(e,t))return;i.uniform4fv(this.addr,t),Ze(e,t)}}function Ox(i,t){let e=this.cache,n=t.elements;if(n===void 0){if($e(e,t))return;i.uniformMatrix2fv(this.addr,!1,t),Ze(e,t)}else{if($e(e,n))return;pf.set(n),i.uniformMatrix2fv(this.addr,!1,pf),Ze(e,n)}}function Fx(i,t){let e=this.cache,n=t.elements;if(n===void 0){if($e(e,t))return;i.uniformMatrix3fv(this.addr,!1,t),Ze(e,t)}else{if($e(e,n))return;df.set(n),i.uniformMatrix3fv(this.addr,!1,df),Ze(e,n)}}function Bx(i,t){let e=this.cache,n=t.elements;if(n===void 0){if($e(e,t))return;i.uniformMatrix4fv(this.addr,!1,t),Ze(e,t)}else{if($e(e,n))return;ff.set(n),i.uniformMatrix4fv(this.addr,!1,ff),Ze(e,n)}}function kx(i,t){let e=this.cache;e[0]!==t&&(i.uniform1i(this.addr,t),e[0]=t)}function zx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y)&&(i.uniform2i(this.addr,t.x,t.y),e[0]=t.x,e[1]=t.y);else{if($e(e,t))return;i.uniform2iv(this.addr,t),Ze(e,t)}}function Vx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z)&&(i.uniform3i(this.addr,t.x,t.y,t.z),e[0]=t.x,e[1]=t.y,e[2]=t.z);else{if($e(e,t))return;i.uniform3iv(this.addr,t),Ze(e,t)}}function Hx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z||e[3]!==t.w)&&(i.uniform4i(this.addr,t.x,t.y,t.z,t.w),e[0]=t.x,e[1]=t.y,e[2]=t.z,e[3]=t.w);else{if($e(e,t))return;i.uniform4iv(this.addr,t),Ze(e,t)}}function Gx(i,t){let e=this.cache;e[0]!==t&&(i.uniform1ui(this.addr,t),e[0]=t)}function Wx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y)&&(i.uniform2ui(this.addr,t.x,t.y),e[0]=t.x,e[1]=t.y);else{if($e(e,t))return;i.uniform2uiv(this.addr,t),Ze(e,t)}}function Xx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z)&&(i.uniform3ui(this.addr,t.x,t.y,t.z),e[0]=t.x,e[1]=t.y,e[2]=t.z);else{if($e(e,t))return;i.uniform3uiv(this.addr,t),Ze(e,t)}}function Yx(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z||e[3]!==t.w)&&(i.uniform4ui(this.addr,t.x,t.y,t.z,t.w),e[0]=t.x,e[1]=t.y,e[2]=t.z,e[3]=t.w);else{if($e(e,t))return;i.uniform4uiv(this.addr,t),Ze(e,t)}}function qx(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s);let r;this.type===i.SAMPLER_2D_SHADOW?(cf.compareFunction=Wf,r=cf):r=Jf,e.setTexture2D(t||r,s)}function $x(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s),e.setTexture3D(t||jf,s)}function Zx(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s),e.setTextureCube(t||Qf,s)}function Jx(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s),e.setTexture2DArray(t||Kf,s)}function Kx(i){switch(i){case 5126:return Lx;case 35664:return Dx;case 35665:return Ux;case 35666:return Nx;case 35674:return Ox;case 35675:return Fx;case 35676:return Bx;case 5124:case 35670:return kx;case 35667:case 35671:return zx;case 35668:case 35672:return Vx;case 35669:case 35673:return Hx;case 5125:return Gx;case 36294:return Wx;case 36295:return Xx;case 36296:return Yx;case 35678:case 36198:case 36298:case 36306:case 35682:return qx;case 35679:case 36299:case 36307:return $x;case 35680:case 36300:case 36308:case 36293:return Zx;case 36289:case 36303:case 36311:case 36292:return Jx}}function jx(i,t){i.uniform1fv(this.addr,t)}function Qx(i,t){let e=Cr(t,this.size,2);i.uniform2fv(this.addr,e)}function ty(i,t){let e=Cr(t,this.size,3);i.uniform3fv(this.addr,e)}function ey(i,t){let e=Cr(t,this.size,4);i.uniform4fv(this.addr,e)}function ny(i,t){let e=Cr(t,this.size,4);i.uniformMatrix2fv(this.addr,!1,e)}function iy(i,t){let e=Cr(t,this.size,9);i.uniformMatrix3fv(this.addr,!1,e)}function sy(i,t){let e=Cr(t,this.size,16);i.uniformMatrix4fv(this.addr,!1,e)}function ry(i,t){i.uniform1iv(this.addr,t)}function oy(i,t){i.uniform2iv(this.addr,t)}function ay(i,t){i.uniform3iv(this.addr,t)}function ly(i,t){i.uniform4iv(this.addr,t)}function cy(i,t){i.uniform1uiv(this.addr,t)}function hy(i,t){i.uniform2uiv(this.addr,t)}function uy(i,t){i.uniform3uiv(this.addr,t)}function fy(i,t){i.uniform4uiv(this.addr,t)}function dy(i,t,e){let n=this.cache,s=t.length,r=Ra(e,s);$e(n,r)||(i.uniform1iv(this.addr,r),Ze(n,r));for(let o=0;o!==s;++o)e.setTexture2D(t[o]||Jf,r[o])}function py(i,t,e){let n=this.cache,s=t.length,r=Ra(e,s);$e(n,r)||(i.uniform1iv(this.addr,r),Ze(n,r));for(let o=0;o!==s;++o)e.setTexture3D(t[o]||jf,r[o])}function my(i,t,e){let n=this.cache,s=t.length,r=Ra(e,s);$e(n,r)||(i.uniform1iv(this.addr,r),Ze(n,r));for(let o=0;o!==s;++o)e.setTextureCube(t[o]||Qf,r[o])}function gy(i,t,e){let n=this.cache,s=t.length,r=Ra(e,s);$e(n,r)||(i.uniform1iv(this.addr,r),Ze(n,r));for(let o=0;o!==s;++o)e.setTexture2DArray(t[o]||Kf,r[o])}function _y(i){switch(i){case 5126:return jx;case 35664:return Qx;case 35665:return ty;case 35666:return ey;case 35674:return ny;case 35675:return iy;case 35676:return sy;case 5124:case 35670:return ry;case 35667:case 35671:return oy;case 35668:case 35672:return ay;case 35669:case 35673:return ly;case 5125:return cy;case 36294:return hy;case 36295:return uy;case 36296:return fy;case 35678:case 36198:case 36298:case 36306:case 35682:return dy;case 35679:case 36299:case 36307:return py;case 35680:case 36300:case 36308:case 36293:return my;case 36289:case 36303:case 36311:case 36292:return gy}}var Nc=class{constructor(t,e,n){this.id=t,this.addr=n,this.cache=[],this.type=e.type,this.setValue=Kx(e.type)}},Oc=class{constructor(t,e,n){this.id=t,this.addr=n,this.cache=[],this.type=e.type,this.size=e.size,this.setValue=_y(e.type)}},Fc=class{constructor(t){this.id=t,this.seq=[],this.map={}}setValue(t,e,n){let s=this.seq;for(let r=0,o=s.length;r!==o;++r){let a=s[r];a.setValue(t,e[a.id],n)}}},Hl=/(\w+)(\])?(\[|\.)?/g;function mf(i,t){i.seq.push(t),i.map[t.id]=t}function xy(i,t,e){let n=i.name,s=n.length;for(Hl.lastIndex=0;;){let r=Hl.exec(n),o=Hl.lastIndex,a=r[1],l=r[2]==="]",c=r[3];if(l&&(a=a|0),c===void 0||c==="["&&o+2===s){mf(e,c===void 0?new Nc(a,i,t):new Oc(a,i,t));break}else{let f=e.map[a];f===void 0&&(f=new Fc(a),mf(e,f)),e=f}}}var _r=class{constructor(t,e){this.seq=[],this.map={};let n=t.getProgramParameter(e,t.ACTIVE_UNIFORMS);for(let s=0;s<n;++s){let r=t.getActiveUniform(e,s),o=t.getUniformLocation(e,r.name);xy(r,o,this)}}setValue(t,e,n,s){let r=this.map[e];r!==void 0&&r.setValue(t,n,s)}setOptional(t,e,n){let s=e[n];s!==void 0&&this.setValue(t,n,s)}static upload(t,e,n,s){for(let r=0,o=e.length;r!==o;++r){let a=e[r],l=n[a.id];l.needsUpdate!==!1&&a.setValue(t,l.value,s)}}static seqWithValue(t,e){let n=[];for(let s=0,r=t.length;s!==r;++s){let o=t[s];o.id in e&&n.push(o)}return n}};function gf(i,t,e){let n=i.createShader(t);return i.shaderSource(n,e),i.compileShader(n),n}var yy=37297,vy=0;function My(i,t){let e=i.split(`
`),n=[],s=Math.max(t-6,0),r=Math.min(t+6,e.length);for(let o=s;o<r;o++){let a=o+1;n.push(`${a===t?">":" "} ${a}: ${e[o]}`)}return n.join(`
`)}var _f=new te;function Sy(i){de._getMatrix(_f,de.workingColorSpace,i);let t=`mat3( ${_f.elements.map(e=>e.toFixed(4))} )`;switch(de.getTransfer(i)){case Ca:return[t,"LinearTransferOETF"];case Ee:return[t,"sRGBTransferOETF"];default:return console.warn("THREE.WebGLProgram: Unsupported color space: ",i),[t,"LinearTransferOETF"]}}function xf(i,t,e){let n=i.getShaderParameter(t,i.COMPILE_STATUS),s=i.getShaderInfoLog(t).trim();if(n&&s==="")return"";let r=/ERROR: 0:(\d+)/.exec(s);if(r){let o=parseInt(r[1]);return e.toUpperCase()+`

`+s+`

`+My(i.getShaderSource(t),o)}else return s}function by(i,t){let e=Sy(t);return[`vec4 ${i}( vec4 value ) {`,`	return ${e[1]}( vec4( value.rgb * ${e[0]}, value.a ) );`,"}"].join(`
`)}function wy(i,t){let e;switch(t){case Dm:e="Linear";break;case Um:e="Reinhard";break;case Nm:e="Cineon";break;case Om:e="ACESFilmic";break;case Bm:e="AgX";break;case km:e="Neutral";break;case Fm:e="Custom";break;default:console.warn("THREE.WebGLProgram: Unsupported toneMapping:",t),e="Linear"}return"vec3 "+i+"( vec3 color ) { return "+e+"ToneMapping( color ); }"}var Zo=new H;function Ey(){de.getLuminanceCoefficients(Zo);let i=Zo.x.toFixed(4),t=Zo.y.toFixed(4),e=Zo.z.toFixed(4);return["float luminance( const in vec3 rgb ) {",`	const vec3 weights = vec3( ${i}, ${t}, ${e} );`,"	return dot( weights, rgb );","}"].join(`
`)}function Ty(i){return[i.extensionClipCullDistance?"#extension GL_ANGLE_clip_cull_distance : require":"",i.extensionMultiDraw?"#extension GL_ANGLE_multi_draw : require":""].filter(eo).join(`
`)}function Ay(i){let t=[];for(let e in i){let n=i[e];n!==!1&&t.push("#define "+e+" "+n)}return t.join(`
`)}function Cy(i,t){let e={},n=i.getProgramParameter(t,i.ACTIVE_ATTRIBUTES);for(let s=0;s<n;s++){let r=i.getActiveAttrib(t,s),o=r.name,a=1;r.type===i.FLOAT_MAT2&&(a=2),r.type===i.FLOAT_MAT3&&(a=3),r.type===i.FLOAT_MAT4&&(a=4),e[o]={type:r.type,location:i.getAttribLocation(t,o),locationSize:a}}return e}function eo(i){return i!==""}function yf(i,t){let e=t.numSpotLightShadows+t.numSpotLightMaps-t.numSpotLightShadowsWithMaps;return i.replace(/NUM_DIR_LIGHTS/g,t.numDirLights).replace(/NUM_SPOT_LIGHTS/g,t.numSpotLights).replace(/NUM_SPOT_LIGHT_MAPS/g,t.numSpotLightMaps).replace(/NUM_SPOT_LIGHT_COORDS/g,e).replace(/NUM_RECT_AREA_LIGHTS/g,t.numRectAreaLights).replace(/NUM_POINT_LIGHTS/g,t.numPointLights).replace(/NUM_HEMI_LIGHTS/g,t.numHemiLights).replace(/NUM_DIR_LIGHT_SHADOWS/g,t.numDirLightShadows).replace(/NUM_SPOT_LIGHT_SHADOWS_WITH_MAPS/g,t.numSpotLightShadowsWithMaps).replace(/NUM_SPOT_LIGHT_SHADOWS/g,t.numSpotLightShadows).replace(/NUM_POINT_LIGHT_SHADOWS/g,t.numPointLightShadows)}function vf(i,t){return i.replace(/NUM_CLIPPING_PLANES/g,t.numClippingPlanes).replace(/UNION_CLIPPING_PLANES/g,t.numClippingPlanes-t.numClipIntersection)}var Ry=/^[ \t]*#include +<([\w\d./]+)>/gm;function Bc(i){return i.replace(Ry,Iy)}var Py=new Map;function Iy(i,t){let e=ne[t];if(e===void 0){let n=Py.get(t);if(n!==void 0)e=ne[n],console.warn('THREE.WebGLRenderer: Shader chunk "%s" has been deprecated. Use "%s" instead.',t,n);else throw new Error("Can not resolve #include <"+t+">")}return Bc(e)}var Ly=/#pragma unroll_loop_start\s+for\s*\(\s*int\s+i\s*=\s*(\d+)\s*;\s*i\s*<\s*(\d+)\s*;\s*i\s*\+\+\s*\)\s*{([\s\S]+?)}\s+#pragma unroll_loop_end/g;function Mf(i){return i.replace(Ly,Dy)}function Dy(i,t,e,n){let s="";for(let r=parseInt(t);r<parseInt(e);r++)s+=n.replace(/\[\s*i\s*\]/g,"[ "+r+" ]").replace(/UNROLLED_LOOP_INDEX/g,r);return s}function Sf(i){let t=`precision ${i.precision} float;
	precision ${i.precision} int;
	precision ${i.precision} sampler2D;
	precision ${i.precision} samplerCube;
	precision ${i.precision} sampler3D;
	precision ${i.precision} sampler2DArray;
	precision ${i.precision} sampler2DShadow;
	precision ${i.precision} samplerCubeShadow;
	precision ${i.precision} sampler2DArrayShadow;
	precision ${i.precision} isampler2D;
	precision ${i.precision} isampler3D;
	precision ${i.precision} isamplerCube;
	precision ${i.precision} isampler2DArray;
	precision ${i.precision} usampler2D;
	precision ${i.precision} usampler3D;
	precision ${i.precision} usamplerCube;
	precision ${i.precision} usampler2DArray;
	`;return i.precision==="highp"?t+=`
#define HIGH_PRECISION`:i.precision==="mediump"?t+=`
#define MEDIUM_PRECISION`:i.precision==="lowp"&&(t+=`
#define LOW_PRECISION`),t}function Uy(i){let t="SHADOWMAP_TYPE_BASIC";return i.shadowMapType===If?t="SHADOWMAP_TYPE_PCF":i.shadowMapType===fm?t="SHADOWMAP_TYPE_PCF_SOFT":i.shadowMapType===Ii&&(t="SHADOWMAP_TYPE_VSM"),t}function Ny(i){let t="ENVMAP_TYPE_CUBE";if(i.envMap)switch(i.envMapMode){case yr:case vr:t="ENVMAP_TYPE_CUBE";break;case Aa:t="ENVMAP_TYPE_CUBE_UV";break}return t}function Oy(i){let t="ENVMAP_MODE_REFLECTION";if(i.envMap)switch(i.envMapMode){case vr:t="ENVMAP_MODE_REFRACTION";break}return t}function Fy(i){let t="ENVMAP_BLENDING_NONE";if(i.envMap)switch(i.combine){case Lf:t="ENVMAP_BLENDING_MULTIPLY";break;case Im:t="ENVMAP_BLENDING_MIX";break;case Lm:t="ENVMAP_BLENDING_ADD";break}return t}function By(i){let t=i.envMapCubeUVHeight;if(t===null)return null;let e=Math.log2(t)-2,n=1/t;return{texelWidth:1/(3*Math.max(Math.pow(2,e),7*16)),texelHeight:n,maxMip:e}}function ky(i,t,e,n){let s=i.getContext(),r=e.defines,o=e.vertexShader,a=e.fragmentShader,l=Uy(e),c=Ny(e),u=Oy(e),f=Fy(e),h=By(e),p=Ty(e),_=Ay(r),x=s.createProgram(),m,d,A=e.glslVersion?"#version "+e.glslVersion+`
`:"";e.isRawShaderMaterial?(m=["#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_].filter(eo).join(`
`),m.length>0&&(m+=`
`),d=["#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_].filter(eo).join(`
`),d.length>0&&(d+=`
`)):(m=[Sf(e),"#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_,e.extensionClipCullDistance?"#define USE_CLIP_DISTANCE":"",e.batching?"#define USE_BATCHING":"",e.batchingColor?"#define USE_BATCHING_COLOR":"",e.instancing?"#define USE_INSTANCING":"",e.instancingColor?"#define USE_INSTANCING_COLOR":"",e.instancingMorph?"#define USE_INSTANCING_MORPH":"",e.useFog&&e.fog?"#define USE_FOG":"",e.useFog&&e.fogExp2?"#define FOG_EXP2":"",e.map?"#define USE_MAP":"",e.envMap?"#define USE_ENVMAP":"",e.envMap?"#define "+u:"",e.lightMap?"#define USE_LIGHTMAP":"",e.aoMap?"#define USE_AOMAP":"",e.bumpMap?"#define USE_BUMPMAP":"",e.normalMap?"#define USE_NORMALMAP":"",e.normalMapObjectSpace?"#define USE_NORMALMAP_OBJECTSPACE":"",e.normalMapTangentSpace?"#define USE_NORMALMAP_TANGENTSPACE":"",e.displacementMap?"#define USE_DISPLACEMENTMAP":"",e.emissiveMap?"#define USE_EMISSIVEMAP":"",e.anisotropy?"#define USE_ANISOTROPY":"",e.anisotropyMap?"#define USE_ANISOTROPYMAP":"",e.clearcoatMap?"#define USE_CLEARCOATMAP":"",e.clearcoatRoughnessMap?"#define USE_CLEARCOAT_ROUGHNESSMAP":"",e.clearcoatNormalMap?"#define USE_CLEARCOAT_NORMALMAP":"",e.iridescenceMap?"#define USE_IRIDESCENCEMAP":"",e.iridescenceThicknessMap?"#define USE_IRIDESCENCE_THICKNESSMAP":"",e.specularMap?"#define USE_SPECULARMAP":"",e.specularColorMap?"#define USE_SPECULAR_COLORMAP":"",e.specularIntensityMap?"#define USE_SPECULAR_INTENSITYMAP":"",e.roughnessMap?"#define USE_ROUGHNESSMAP":"",e.metalnessMap?"#define USE_METALNESSMAP":"",e.alphaMap?"#define USE_ALPHAMAP":"",e.alphaHash?"#define USE_ALPHAHASH":"",e.transmission?"#define USE_TRANSMISSION":"",e.transmissionMap?"#define USE_TRANSMISSIONMAP":"",e.thicknessMap?"#define USE_THICKNESSMAP":"",e.sheenColorMap?"#define USE_SHEEN_COLORMAP":"",e.sheenRoughnessMap?"#define USE_SHEEN_ROUGHNESSMAP":"",e.mapUv?"#define MAP_UV "+e.mapUv:"",e.alphaMapUv?"#define ALPHAMAP_UV "+e.alphaMapUv:"",e.lightMapUv?"#define LIGHTMAP_UV "+e.lightMapUv:"",e.aoMapUv?"#define AOMAP_UV "+e.aoMapUv:"",e.emissiveMapUv?"#define EMISSIVEMAP_UV "+e.emissiveMapUv:"",e.bumpMapUv?"#define BUMPMAP_UV "+e.bumpMapUv:"",e.normalMapUv?"#define NORMALMAP_UV "+e.normalMapUv:"",e.displacementMapUv?"#define DISPLACEMENTMAP_UV "+e.displacementMapUv:"",e.metalnessMapUv?"#define METALNESSMAP_UV "+e.metalnessMapUv:"",e.roughnessMapUv?"#define ROUGHNESSMAP_UV "+e.roughnessMapUv:"",e.anisotropyMapUv?"#define ANISOTROPYMAP_UV "+e.anisotropyMapUv:"",e.clearcoatMapUv?"#define CLEARCOATMAP_UV "+e.clearcoatMapUv:"",e.clearcoatNormalMapUv?"#define CLEARCOAT_NORMALMAP_UV "+e.clearcoatNormalMapUv:"",e.clearcoatRoughnessMapUv?"#define CLEARCOAT_ROUGHNESSMAP_UV "+e.clearcoatRoughnessMapUv:"",e.iridescenceMapUv?"#define IRIDESCENCEMAP_UV "+e.iridescenceMapUv:"",e.iridescenceThicknessMapUv?"#define IRIDESCENCE_THICKNESSMAP_UV "+e.iridescenceThicknessMapUv:"",e.sheenColorMapUv?"#define SHEEN_COLORMAP_UV "+e.sheenColorMapUv:"",e.sheenRoughnessMapUv?"#define SHEEN_ROUGHNESSMAP_UV "+e.sheenRoughnessMapUv:"",e.specularMapUv?"#define SPECULARMAP_UV "+e.specularMapUv:"",e.specularColorMapUv?"#define SPECULAR_COLORMAP_UV "+e.specularColorMapUv:"",e.specularIntensityMapUv?"#define SPECULAR_INTENSITYMAP_UV "+e.specularIntensityMapUv:"",e.transmissionMapUv?"#define TRANSMISSIONMAP_UV "+e.transmissionMapUv:"",e.thicknessMapUv?"#define THICKNESSMAP_UV "+e.thicknessMapUv:"",e.vertexTangents&&e.flatShading===!1?"#define USE_TANGENT":"",e.vertexColors?"#define USE_COLOR":"",e.vertexAlphas?"#define USE_COLOR_ALPHA":"",e.vertexUv1s?"#define USE_UV1":"",e.vertexUv2s?"#define USE_UV2":"",e.vertexUv3s?"#define USE_UV3":"",e.pointsUvs?"#define USE_POINTS_UV":"",e.flatShading?"#define FLAT_SHADED":"",e.skinning?"#define USE_SKINNING":"",e.morphTargets?"#define USE_MORPHTARGETS":"",e.morphNormals&&e.flatShading===!1?"#define USE_MORPHNORMALS":"",e.morphColors?"#define USE_MORPHCOLORS":"",e.morphTargetsCount>0?"#define MORPHTARGETS_TEXTURE_STRIDE "+e.morphTextureStride:"",e.morphTargetsCount>0?"#define MORPHTARGETS_COUNT "+e.morphTargetsCount:"",e.doubleSided?"#define DOUBLE_SIDED":"",e.flipSided?"#define FLIP_SIDED":"",e.shadowMapEnabled?"#define USE_SHADOWMAP":"",e.shadowMapEnabled?"#define "+l:"",e.sizeAttenuation?"#define USE_SIZEATTENUATION":"",e.numLightProbes>0?"#define USE_LIGHT_PROBES":"",e.logarithmicDepthBuffer?"#define USE_LOGDEPTHBUF":"",e.reverseDepthBuffer?"#define USE_REVERSEDEPTHBUF":"","uniform mat4 modelMatrix;","uniform mat4 modelViewMatrix;","uniform mat4 projectionMatrix;","uniform mat4 viewMatrix;","uniform mat3 normalMatrix;","uniform vec3 cameraPosition;","uniform bool isOrthographic;","#ifdef USE_INSTANCING","	attribute mat4 instanceMatrix;","#endif","#ifdef USE_INSTANCING_COLOR","	attribute vec3 instanceColor;","#endif","#ifdef USE_INSTANCING_MORPH","	uniform sampler2D morphTexture;","#endif","attribute vec3 position;","attribute vec3 normal;","attribute vec2 uv;","#ifdef USE_UV1","	attribute vec2 uv1;","#endif","#ifdef USE_UV2","	attribute vec2 uv2;","#endif","#ifdef USE_UV3","	attribute vec2 uv3;","#endif","#ifdef USE_TANGENT","	attribute vec4 tangent;","#endif","#if defined( USE_COLOR_ALPHA )","	attribute vec4 color;","#elif defined( USE_COLOR )","	attribute vec3 color;","#endif","#ifdef USE_SKINNING","	attribute vec4 skinIndex;","	attribute vec4 skinWeight;","#endif",`
`].filter(eo).join(`
`),d=[Sf(e),"#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_,e.useFog&&e.fog?"#define USE_FOG":"",e.useFog&&e.fogExp2?"#define FOG_EXP2":"",e.alphaToCoverage?"#define ALPHA_TO_COVERAGE":"",e.map?"#define USE_MAP":"",e.matcap?"#define USE_MATCAP":"",e.envMap?"#define USE_ENVMAP":"",e.envMap?"#define "+c:"",e.envMap?"#define "+u:"",e.envMap?"#define "+f:"",h?"#define CUBEUV_TEXEL_WIDTH "+h.texelWidth:"",h?"#define CUBEUV_TEXEL_HEIGHT "+h.texelHeight:"",h?"#define CUBEUV_MAX_MIP "+h.maxMip+".0":"",e.lightMap?"#define USE_LIGHTMAP":"",e.aoMap?"#define USE_AOMAP":"",e.bumpMap?"#define USE_BUMPMAP":"",e.normalMap?"#define USE_NORMALMAP":"",e.normalMapObjectSpace?"#define USE_NORMALMAP_OBJECTSPACE":"",e.normalMapTangentSpace?"#define USE_NORMALMAP_TANGENTSPACE":"",e.emissiveMap?"#define USE_EMISSIVEMAP":"",e.anisotropy?"#define USE_ANISOTROPY":"",e.anisotropyMap?"#define USE_ANISOTROPYMAP":"",e.clearcoat?"#define USE_CLEARCOAT":"",e.clearcoatMap?"#define USE_CLEARCOATMAP":"",e.clearcoatRoughnessMap?"#define USE_CLEARCOAT_ROUGHNESSMAP":"",e.clearcoatNormalMap?"#define USE_CLEARCOAT_NORMALMAP":"",e.dispersion?"#define USE_DISPERSION":"",e.iridescence?"#define USE_IRIDESCENCE":"",e.iridescenceMap?"#define USE_IRIDESCENCEMAP":"",e.iridescenceThicknessMap?"#define USE_IRIDESCENCE_THICKNESSMAP":"",e.specularMap?"#define USE_SPECULARMAP":"",e.specularColorMap?"#define USE_SPECULAR_COLORMAP":"",e.specularIntensityMap?"#define USE_SPECULAR_INTENSITYMAP":"",e.roughnessMap?"#define USE_ROUGHNESSMAP":"",e.metalnessMap?"#define USE_METALNESSMAP":"",e.alphaMap?"#define USE_ALPHAMAP":"",e.alphaTest?"#define USE_ALPHATEST":"",e.alphaHash?"#define USE_ALPHAHASH":"",e.sheen?"#define USE_SHEEN":"",e.sheenColorMap?"#define USE_SHEEN_COLORMAP":"",e.sheenRoughnessMap?"#define USE_SHEEN_ROUGHNESSMAP":"",e.transmission?"#define USE_TRANSMISSION":"",e.transmissionMap?"#define USE_TRANSMISSIONMAP":"",e.thicknessMap?"#define USE_THICKNESSMAP":"",e.vertexTangents&&e.flatShading===!1?"#define USE_TANGENT":"",e.vertexColors||e.instancingColor||e.batchingColor?"#define USE_COLOR":"",e.vertexAlphas?"#define USE_COLOR_ALPHA":"",e.vertexUv1s?"#define USE_UV1":"",e.vertexUv2s?"#define USE_UV2":"",e.vertexUv3s?"#define USE_UV3":"",e.pointsUvs?"#define USE_POINTS_UV":"",e.gradientMap?"#define USE_GRADIENTMAP":"",e.flatShading?"#define FLAT_SHADED":"",e.doubleSided?"#define DOUBLE_SIDED":"",e.flipSided?"#define FLIP_SIDED":"",e.shadowMapEnabled?"#define USE_SHADOWMAP":"",e.shadowMapEnabled?"#define "+l:"",e.premultipliedAlpha?"#define PREMULTIPLIED_ALPHA":"",e.numLightProbes>0?"#define USE_LIGHT_PROBES":"",e.decodeVideoTexture?"#define DECODE_VIDEO_TEXTURE":"",e.decodeVideoTextureEmissive?"#define DECODE_VIDEO_TEXTURE_EMISSIVE":"",e.logarithmicDepthBuffer?"#define USE_LOGDEPTHBUF":"",e.reverseDepthBuffer?"#define USE_REVERSEDEPTHBUF":"","uniform mat4 viewMatrix;","uniform vec3 cameraPosition;","uniform bool isOrthographic;",e.toneMapping!==ns?"#define TONE_MAPPING":"",e.toneMapping!==ns?ne.tonemapping_pars_fragment:"",e.toneMapping!==ns?wy("toneMapping",e.toneMapping):"",e.dithering?"#define DITHERING":"",e.opaque?"#define OPAQUE":"",ne.colorspace_pars_fragment,by("linearToOutputTexel",e.outputColorSpace),Ey(),e.useDepthPacking?"#define DEPTH_PACKING "+e.depthPacking:"",`
`].filter(eo).join(`
`)),o=Bc(o),o=yf(o,e),o=vf(o,e),a=Bc(a),a=yf(a,e),a=vf(a,e),o=Mf(o),a=Mf(a),e.isRawShaderMaterial!==!0&&(A=`#version 300 es
`,m=[p,"#define attribute in","#define varying out","#define texture2D texture"].join(`
`)+`
`+m,d=["#define varying in",e.glslVersion===Uu?"":"layout(location = 0) out highp vec4 pc_fragColor;",e.glslVersion===Uu?"":"#define gl_FragColor pc_fragColor","#define gl_FragDepthEXT gl_FragDepth","#define texture2D texture","#define textureCube texture","#define texture2DProj textureProj","#define texture2DLodEXT textureLod","#define texture2DProjLodEXT textureProjLod","#define textureCubeLodEXT textureLod","#define texture2DGradEXT textureGrad","#define texture2DProjGradEXT textureProjGrad","#define textureCubeGradEXT textureGrad"].join(`
`)+`
`+d);let w=A+m+o,b=A+d+a,D=gf(s,s.VERTEX_SHADER,w),L=gf(s,s.FRAGMENT_SHADER,b);s.attachShader(x,D),s.attachShader(x,L),e.index0AttributeName!==void 0?s.bindAttribLocation(x,0,e.index0AttributeName):e.morphTargets===!0&&s.bindAttribLocation(x,0,"position"),s.linkProgram(x);function I(C){if(i.debug.checkShaderErrors){let W=s.getProgramInfoLog(x).trim(),V=s.getShaderInfoLog(D).trim(),Y=s.getShaderInfoLog(L).trim(),j=!0,Z=!0;if(s.getProgramParameter(x,s.LINK_STATUS)===!1)if(j=!1,typeof i.debug.onShaderError=="function")i.debug.onShaderError(s,x,D,L);else{let et=xf(s,D,"vertex"),K=xf(s,L,"fragment");console.error("THREE.WebGLProgram: Shader Error "+s.getError()+" - VALIDATE_STATUS "+s.getProgramParameter(x,s.VALIDATE_STATUS)+`

Material Name: `+C.name+`
Material Type: `+C.type+`

Program Info Log: `+W+`
`+et+`
`+K)}else W!==""?console.warn("THREE.WebGLProgram: Program Info Log:",W):(V===""||Y==="")&&(Z=!1);Z&&(C.diagnostics={runnable:j,programLog:W,vertexShader:{log:V,prefix:m},fragmentShader:{log:Y,prefix:d}})}s.deleteShader(D),s.deleteShader(L),U=new _r(s,x),E=Cy(s,x)}let U;this.getUniforms=function(){return U===void 0&&I(this),U};let E;this.getAttributes=function(){return E===void 0&&I(this),E};let M=e.rendererExtensionParallelShaderCompile===!1;return this.isReady=function(){return M===!1&&(M=s.getProgramParameter(x,yy)),M},this.destroy=function(){n.releaseStatesOfProgram(this),s.deleteProgram(x),this.program=void 0},this.type=e.shaderType,this.name=e.shaderName,this.id=vy++,this.cacheKey=t,this.usedTimes=1,this.program=x,this.vertexShader=D,this.fragmentShader=L,this}var zy=0,kc=class{constructor(){this.shaderCache=new Map,this.materialCache=new Map}update(t){let e=t.vertexShader,n=t.fragmentShader,s=this._getShaderStage(e),r=this._getShaderStage(n),o=this._getShaderCacheForMaterial(t);return o.has(s)===!1&&(o.add(s),s.usedTimes++),o.has(r)===!1&&(o.add(r),r.usedTimes++),this}remove(t){let e=this.materialCache.get(t);for(let n of e)n.usedTimes--,n.usedTimes===0&&this.shaderCache.delete(n.code);return this.materialCache.delete(t),this}getVertexShaderID(t){return this._getShaderStage(t.vertexShader).id}getFragmentShaderID(t){return this._getShaderStage(t.fragmentShader).id}dispose(){this.shaderCache.clear(),this.materialCache.clear()}_getShaderCacheForMaterial(t){let e=this.materialCache,n=e.get(t);return n===void 0&&(n=new Set,e.set(t,n)),n}_getShaderStage(t){let e=this.shaderCache,n=e.get(t);return n===void 0&&(n=new zc(t),e.set(t,n)),n}},zc=class{constructor(t){this.id=zy++,this.code=t,this.usedTimes=0}};function Vy(i,t,e,n,s,r,o){let a=new ca,l=new kc,c=new Set,u=[],f=s.logarithmicDepthBuffer,h=s.vertexTextures,p=s.precision,_={MeshDepthMaterial:"depth",MeshDistanceMaterial:"distanceRGBA",MeshNormalMaterial:"normal",MeshBasicMaterial:"basic",MeshLambertMaterial:"lambert",MeshPhongMaterial:"phong",MeshToonMaterial:"toon",MeshStandardMaterial:"physical",MeshPhysicalMaterial:"physical",MeshMatcapMaterial:"matcap",LineBasicMaterial:"basic",LineDashedMaterial:"dashed",PointsMaterial:"points",ShadowMaterial:"shadow",SpriteMaterial:"sprite"};function x(E){return c.add(E),E===0?"uv":`uv${E}`}function m(E,M,C,W,V){let Y=W.fog,j=V.geometry,Z=E.isMeshStandardMaterial?W.environment:null,et=(E.isMeshStandardMaterial?e:t).get(E.envMap||Z),K=et&&et.mapping===Aa?et.image.height:null,ht=_[E.type];E.precision!==null&&(p=s.getMaxPrecision(E.precision),p!==E.precision&&console.warn("THREE.WebGLProgram.getParameters:",E.precision,"not supported, using",p,"instead."));let ot=j.morphAttributes.position||j.morphAttributes.normal||j.morphAttributes.color,mt=ot!==void 0?ot.length:0,dt=0;j.morphAttributes.position!==void 0&&(dt=1),j.morphAttributes.normal!==void 0&&(dt=2),j.morphAttributes.color!==void 0&&(dt=3);let Gt,$,ct,It;if(ht){let re=_i[ht];Gt=re.vertexShader,$=re.fragmentShader}else Gt=E.vertexShader,$=E.fragmentShader,l.update(E),ct=l.getVertexShaderID(E),It=l.getFragmentShaderID(E);let ut=i.getRenderTarget(),Dt=i.state.buffers.depth.getReversed(),Ht=V.isInstancedMesh===!0,zt=V.isBatchedMesh===!0,se=!!E.map,jt=!!E.matcap,Se=!!et,z=!!E.aoMap,qe=!!E.lightMap,ee=!!E.bumpMap,Zt=!!E.normalMap,Ut=!!E.displacementMap,xe=!!E.emissiveMap,Ft=!!E.metalnessMap,T=!!E.roughnessMap,y=E.anisotropy>0,B=E.clearcoat>0,nt=E.dispersion>0,J=E.iridescence>0,tt=E.sheen>0,Pt=E.transmission>0,gt=y&&!!E.anisotropyMap,vt=B&&!!E.clearcoatMap,Xt=B&&!!E.clearcoatNormalMap,at=B&&!!E.clearcoatRoughnessMap,_t=J&&!!E.iridescenceMap,Bt=J&&!!E.iridescenceThicknessMap,Vt=tt&&!!E.sheenColorMap,St=tt&&!!E.sheenRoughnessMap,Qt=!!E.specularMap,Yt=!!E.specularColorMap,me=!!E.specularIntensityMap,N=Pt&&!!E.transmissionMap,xt=Pt&&!!E.thicknessMap,Q=!!E.gradientMap,st=!!E.alphaMap,wt=E.alphaTest>0,bt=!!E.alphaHash,Jt=!!E.extensions,Ue=ns;E.toneMapped&&(ut===null||ut.isXRRenderTarget===!0)&&(Ue=i.toneMapping);let At={shaderID:ht,shaderType:E.type,shaderName:E.name,vertexShader:Gt,fragmentShader:$,defines:E.defines,customVertexShaderID:ct,customFragmentShaderID:It,isRawShaderMaterial:E.isRawShaderMaterial===!0,glslVersion:E.glslVersion,precision:p,batching:zt,batchingColor:zt&&V._colorsTexture!==null,instancing:Ht,instancingColor:Ht&&V.instanceColor!==null,instancingMorph:Ht&&V.morphTexture!==null,supportsVertexTextures:h,outputColorSpace:ut===null?i.outputColorSpace:ut.isXRRenderTarget===!0?ut.texture.colorSpace:ss,alphaToCoverage:!!E.alphaToCoverage,map:se,matcap:jt,envMap:Se,envMapMode:Se&&et.mapping,envMapCubeUVHeight:K,aoMap:z,lightMap:qe,bumpMap:ee,normalMap:Zt,displacementMap:h&&Ut,emissiveMap:xe,normalMapObjectSpace:Zt&&E.normalMapType===Wm,normalMapTangentSpace:Zt&&E.normalMapType===Gm,metalnessMap:Ft,roughnessMap:T,anisotropy:y,anisotropyMap:gt,clearcoat:B,clearcoatMap:vt,clearcoatNormalMap:Xt,clearcoatRoughnessMap:at,dispersion:nt,iridescence:J,iridescenceMap:_t,iridescenceThicknessMap:Bt,sheen:tt,sheenColorMap:Vt,sheenRoughnessMap:St,specularMap:Qt,specularColorMap:Yt,specularIntensityMap:me,transmission:Pt,transmissionMap:N,thicknessMap:xt,gradientMap:Q,opaque:E.transparent===!1&&E.blending===pr&&E.alphaToCoverage===!1,alphaMap:st,alphaTest:wt,alphaHash:bt,combine:E.combine,mapUv:se&&x(E.map.channel),aoMapUv:z&&x(E.aoMap.channel),lightMapUv:qe&&x(E.lightMap.channel),bumpMapUv:ee&&x(E.bumpMap.channel),normalMapUv:Zt&&x(E.normalMap.channel),displacementMapUv:Ut&&x(E.displacementMap.channel),emissiveMapUv:xe&&x(E.emissiveMap.channel),metalnessMapUv:Ft&&x(E.metalnessMap.channel),roughnessMapUv:T&&x(E.roughnessMap.channel),anisotropyMapUv:gt&&x(E.anisotropyMap.channel),clearcoatMapUv:vt&&x(E.clearcoatMap.channel),clearcoatNormalMapUv:Xt&&x(E.clearcoatNormalMap.channel),clearcoatRoughnessMapUv:at&&x(E.clearcoatRoughnessMap.channel),iridescenceMapUv:_t&&x(E.iridescenceMap.channel),iridescenceThicknessMapUv:Bt&&x(E.iridescenceThicknessMap.channel),sheenColorMapUv:Vt&&x(E.sheenColorMap.channel),sheenRoughnessMapUv:St&&x(E.sheenRoughnessMap.channel),specularMapUv:Qt&&x(E.specularMap.channel),specularColorMapUv:Yt&&x(E.specularColorMap.channel),specularIntensityMapUv:me&&x(E.specularIntensityMap.channel),transmissionMapUv:N&&x(E.transmissionMap.channel),thicknessMapUv:xt&&x(E.thicknessMap.channel),alphaMapUv:st&&x(E.alphaMap.channel),vertexTangents:!!j.attributes.tangent&&(Zt||y),vertexColors:E.vertexColors,vertexAlphas:E.vertexColors===!0&&!!j.attributes.color&&j.attributes.color.itemSize===4,pointsUvs:V.isPoints===!0&&!!j.attributes.uv&&(se||st),fog:!!Y,useFog:E.fog===!0,fogExp2:!!Y&&Y.isFogExp2,flatShading:E.flatShading===!0,sizeAttenuation:E.sizeAttenuation===!0,logarithmicDepthBuffer:f,reverseDepthBuffer:Dt,skinning:V.isSkinnedMesh===!0,morphTargets:j.morphAttributes.position!==void 0,morphNormals:j.morphAttributes.normal!==void 0,morphColors:j.morphAttributes.color!==void 0,morphTargetsCount:mt,morphTextureStride:dt,numDirLights:M.directional.length,numPointLights:M.point.length,numSpotLights:M.spot.length,numSpotLightMaps:M.spotLightMap.length,numRectAreaLights:M.rectArea.length,numHemiLights:M.hemi.length,numDirLightShadows:M.directionalShadowMap.length,numPointLightShadows:M.pointShadowMap.length,numSpotLightShadows:M.spotShadowMap.length,numSpotLightShadowsWithMaps:M.numSpotLightShadowsWithMaps,numLightProbes:M.numLightProbes,numClippingPlanes:o.numPlanes,numClipIntersection:o.numIntersection,dithering:E.dithering,shadowMapEnabled:i.shadowMap.enabled&&C.length>0,shadowMapType:i.shadowMap.type,toneMapping:Ue,decodeVideoTexture:se&&E.map.isVideoTexture===!0&&de.getTransfer(E.map.colorSpace)===Ee,decodeVideoTextureEmissive:xe&&E.emissiveMap.isVideoTexture===!0&&de.getTransfer(E.emissiveMap.colorSpace)===Ee,premultipliedAlpha:E.premultipliedAlpha,doubleSided:E.side===ii,flipSided:E.side===wn,useDepthPacking:E.depthPacking>=0,depthPacking:E.depthPacking||0,index0AttributeName:E.index0AttributeName,extensionClipCullDistance:Jt&&E.extensions.clipCullDistance===!0&&n.has("WEBGL_clip_cull_distance"),extensionMultiDraw:(Jt&&E.extensions.multiDraw===!0||zt)&&n.has("WEBGL_multi_draw"),rendererExtensionParallelShaderCompile:n.has("KHR_parallel_shader_compile"),customProgramCacheKey:E.customProgramCacheKey()};return At.vertexUv1s=c.has(1),At.vertexUv2s=c.has(2),At.vertexUv3s=c.has(3),c.clear(),At}function d(E){let M=[];if(E.shaderID?M.push(E.shaderID):(M.push(E.customVertexShaderID),M.push(E.customFragmentShaderID)),E.defines!==void 0)for(let C in E.defines)M.push(C),M.push(E.defines[C]);return E.isRawShaderMaterial===!1&&(A(M,E),w(M,E),M.push(i.outputColorSpace)),M.push(E.customProgramCacheKey),M.join()}function A(E,M){E.push(M.precision),E.push(M.outputColorSpace),E.push(M.envMapMode),E.push(M.envMapCubeUVHeight),E.push(M.mapUv),E.push(M.alphaMapUv),E.push(M.lightMapUv),E.push(M.aoMapUv),E.push(M.bumpMapUv),E.push(M.normalMapUv),E.push(M.displacementMapUv),E.push(M.emissiveMapUv),E.push(M.metalnessMapUv),E.push(M.roughnessMapUv),E.push(M.anisotropyMapUv),E.push(M.clearcoatMapUv),E.push(M.clearcoatNormalMapUv),E.push(M.clearcoatRoughnessMapUv),E.push(M.iridescenceMapUv),E.push(M.iridescenceThicknessMapUv),E.push(M.sheenColorMapUv),E.push(M.sheenRoughnessMapUv),E.push(M.specularMapUv),E.push(M.specularColorMapUv),E.push(M.specularIntensityMapUv),E.push(M.transmissionMapUv),E.push(M.thicknessMapUv),E.push(M.combine),E.push(M.fogExp2),E.push(M.sizeAttenuation),E.push(M.morphTargetsCount),E.push(M.morphAttributeCount),E.push(M.numDirLights),E.push(M.numPointLights),E.push(M.numSpotLights),E.push(M.numSpotLightMaps),E.push(M.numHemiLights),E.push(M.numRectAreaLights),E.push(M.numDirLightShadows),E.push(M.numPointLightShadows),E.push(M.numSpotLightShadows),E.push(M.numSpotLightShadowsWithMaps),E.push(M.numLightProbes),E.push(M.shadowMapType),E.push(M.toneMapping),E.push(M.numClippingPlanes),E.push(M.numClipIntersection),E.push(M.depthPacking)}function w(E,M){a.disableAll(),M.supportsVertexTextures&&a.enable(0),M.instancing&&a.enable(1),M.instancingColor&&a.enable(2),M.instancingMorph&&a.enable(3),M.matcap&&a.enable(4),M.envMap&&a.enable(5),M.normalMapObjectSpace&&a.enable(6),M.normalMapTangentSpace&&a.enable(7),M.clearcoat&&a.enable(8),M.iridescence&&a.enable(9),M.alphaTest&&a.enable(10),M.vertexColors&&a.enable(11),M.vertexAlphas&&a.enable(12),M.vertexUv1s&&a.enable(13),M.vertexUv2s&&a.enable(14),M.vertexUv3s&&a.enable(15),M.vertexTangents&&a.enable(16),M.anisotropy&&a.enable(17),M.alphaHash&&a.enable(18),M.batching&&a.enable(19),M.dispersion&&a.enable(20),M.batchingColor&&a.enable(21),E.push(a.mask),a.disableAll(),M.fog&&a.enable(0),M.useFog&&a.enable(1),M.flatShading&&a.enable(2),M.logarithmicDepthBuffer&&a.enable(3),M.reverseDepthBuffer&&a.enable(4),M.skinning&&a.enable(5),M.morphTargets&&a.enable(6),M.morphNormals&&a.enable(7),M.morphColors&&a.enable(8),M.premultipliedAlpha&&a.enable(9),M.shadowMapEnabled&&a.enable(10),M.doubleSided&&a.enable(11),M.flipSided&&a.enable(12),M.useDepthPacking&&a.enable(13),M.dithering&&a.enable(14),M.transmission&&a.enable(15),M.sheen&&a.enable(16),M.opaque&&a.enable(17),M.pointsUvs&&a.enable(18),M.decodeVideoTexture&&a.enable(19),M.decodeVideoTextureEmissive&&a.enable(20),M.alphaToCoverage&&a.enable(21),E.push(a.mask)}function b(E){let M=_[E.type],C;if(M){let W=_i[M];C=Ig.clone(W.uniforms)}else C=E.uniforms;return C}function D(E,M){let C;for(let W=0,V=u.length;W<V;W++){let Y=u[W];if(Y.cacheKey===M){C=Y,++C.usedTimes;break}}return C===void 0&&(C=new ky(i,M,E,r),u.push(C)),C}function L(E){if(--E.usedTimes===0){let M=u.indexOf(E);u[M]=u[u.length-1],u.pop(),E.destroy()}}function I(E){l.remove(E)}function U(){l.dispose()}return{getParameters:m,getProgramCacheKey:d,getUniforms:b,acquireProgram:D,releaseProgram:L,releaseShaderCache:I,programs:u,dispose:U}}function Hy(){let i=new WeakMap;function t(o){return i.has(o)}function e(o){let a=i.get(o);return a===void 0&&(a={},i.set(o,a)),a}function n(o){i.delete(o)}function s(o,a,l){i.get(o)[a]=l}function r(){i=new WeakMap}return{has:t,get:e,remove:n,update:s,dispose:r}}function Gy(i,t){return i.groupOrder!==t.groupOrder?i.groupOrder-t.groupOrder:i.renderOrder!==t.renderOrder?i.renderOrder-t.renderOrder:i.material.id!==t.material.id?i.material.id-t.material.id:i.z!==t.z?i.z-t.z:i.id-t.id}function bf(i,t){return i.groupOrder!==t.groupOrder?i.groupOrder-t.groupOrder:i.renderOrder!==t.renderOrder?i.renderOrder-t.renderOrder:i.z!==t.z?t.z-i.z:i.id-t.id}function wf(){let i=[],t=0,e=[],n=[],s=[];function r(){t=0,e.length=0,n.length=0,s.length=0}function o(f,h,p,_,x,m){let d=i[t];return d===void 0?(d={id:f.id,object:f,geometry:h,material:p,groupOrder:_,renderOrder:f.renderOrder,z:x,group:m},i[t]=d):(d.id=f.id,d.object=f,d.geometry=h,d.material=p,d.groupOrder=_,d.renderOrder=f.renderOrder,d.z=x,d.group=m),t++,d}function a(f,h,p,_,x,m){let d=o(f,h,p,_,x,m);p.transmission>0?n.push(d):p.transparent===!0?s.push(d):e.push(d)}function l(f,h,p,_,x,m){let d=o(f,h,p,_,x,m);p.transmission>0?n.unshift(d):p.transparent===!0?s.unshift(d):e.unshift(d)}function c(f,h){e.length>1&&e.sort(f||Gy),n.length>1&&n.sort(h||bf),s.length>1&&s.sort(h||bf)}function u(){for(let f=t,h=i.length;f<h;f++){let p=i[f];if(p.id===null)break;p.id=null,p.object=null,p.geometry=null,p.material=null,p.group=null}}return{opaque:e,transmissive:n,transparent:s,init:r,push:a,unshift:l,finish:u,sort:c}}function Wy(){let i=new WeakMap;function t(n,s){let r=i.get(n),o;return r===void 0?(o=new wf,i.set(n,[o])):s>=r.length?(o=new wf,r.push(o)):o=r[s],o}function e(){i=new WeakMap}return{get:t,dispose:e}}function Xy(){let i={};return{get:function(t){if(i[t.id]!==void 0)return i[t.id];let e;switch(t.type){case"DirectionalLight":e={direction:new H,color:new ge};break;case"SpotLight":e={position:new H,direction:new H,color:new ge,distance:0,coneCos:0,penumbraCos:0,decay:0};break;case"PointLight":e={position:new H,color:new ge,distance:0,decay:0};break;case"HemisphereLight":e={direction:new H,skyColor:new ge,groundColor:new ge};break;case"RectAreaLight":e={color:new ge,position:new H,halfWidth:new H,halfHeight:new H};break}return i[t.id]=e,e}}}function Yy(){let i={};return{get:function(t){if(i[t.id]!==void 0)return i[t.id];let e;switch(t.type){case"DirectionalLight":e={shadowIntensity:1,shadowBias:0,shadowNormalBias:0,shadowRadius:1,shadowMapSize:new ie};break;case"SpotLight":e={shadowIntensity:1,shadowBias:0,shadowNormalBias:0,shadowRadius:1,shadowMapSize:new ie};break;case"PointLight":e={shadowIntensity:1,shadowBias:0,shadowNormalBias:0,shadowRadius:1,shadowMapSize:new ie,shadowCameraNear:1,shadowCameraFar:1e3};break}return i[t.id]=e,e}}}var qy=0;function $y(i,t){return(t.castShadow?2:0)-(i.castShadow?2:0)+(t.map?1:0)-(i.map?1:0)}function Zy(i){let t=new Xy,e=Yy(),n={version:0,hash:{directionalLength:-1,pointLength:-1,spotLength:-1,rectAreaLength:-1,hemiLength:-1,numDirectionalShadows:-1,numPointShadows:-1,numSpotShadows:-1,numSpotMaps:-1,numLightProbes:-1},ambient:[0,0,0],probe:[],directional:[],directionalShadow:[],directionalShadowMap:[],directionalShadowMatrix:[],spot:[],spotLightMap:[],spotShadow:[],spotShadowMap:[],spotLightMatrix:[],rectArea:[],rectAreaLTC1:null,rectAreaLTC2:null,point:[],pointShadow:[],pointShadowMap:[],pointShadowMatrix:[],hemi:[],numSpotLightShadowsWithMaps:0,numLightProbes:0};for(let c=0;c<9;c++)n.probe.push(new H);let s=new H,r=new We,o=new We;function a(c){let u=0,f=0,h=0;for(let E=0;E<9;E++)n.probe[E].set(0,0,0);let p=0,_=0,x=0,m=0,d=0,A=0,w=0,b=0,D=0,L=0,I=0;c.sort($y);for(let E=0,M=c.length;E<M;E++){let C=c[E],W=C.color,V=C.intensity,Y=C.distance,j=C.shadow&&C.shadow.map?C.shadow.map.texture:null;if(C.isAmbientLight)u+=W.r*V,f+=W.g*V,h+=W.b*V;else if(C.isLightProbe){for(let Z=0;Z<9;Z++)n.probe[Z].addScaledVector(C.sh.coefficients[Z],V);I++}else if(C.isDirectionalLight){let Z=t.get(C);if(Z.color.copy(C.color).multiplyScalar(C.intensity),C.castShadow){let et=C.shadow,K=e.get(C);K.shadowIntensity=et.intensity,K.shadowBias=et.bias,K.shadowNormalBias=et.normalBias,K.shadowRadius=et.radius,K.shadowMapSize=et.mapSize,n.directionalShadow[p]=K,n.directionalShadowMap[p]=j,n.directionalShadowMatrix[p]=C.shadow.matrix,A++}n.directional[p]=Z,p++}else if(C.isSpotLight){let Z=t.get(C);Z.position.setFromMatrixPosition(C.matrixWorld),Z.color.copy(W).multiplyScalar(V),Z.distance=Y,Z.coneCos=Math.cos(C.angle),Z.penumbraCos=Math.cos(C.angle*(1-C.penumbra)),Z.decay=C.decay,n.spot[x]=Z;let et=C.shadow;if(C.map&&(n.spotLightMap[D]=C.map,D++,et.updateMatrices(C),C.castShadow&&L++),n.spotLightMatrix[x]=et.matrix,C.castShadow){let K=e.get(C);K.shadowIntensity=et.intensity,K.shadowBias=et.bias,K.shadowNormalBias=et.normalBias,K.shadowRadius=et.radius,K.shadowMapSize=et.mapSize,n.spotShadow[x]=K,n.spotShadowMap[x]=j,b++}x++}else if(C.isRectAreaLight){let Z=t.get(C);Z.color.copy(W).multiplyScalar(V),Z.halfWidth.set(C.width*.5,0,0),Z.halfHeight.set(0,C.height*.5,0),n.rectArea[m]=Z,m++}else if(C.isPointLight){let Z=t.get(C);if(Z.color.copy(C.color).multiplyScalar(C.intensity),Z.distance=C.distance,Z.decay=C.decay,C.castShadow){let et=C.shadow,K=e.get(C);K.shadowIntensity=et.intensity,K.shadowBias=et.bias,K.shadowNormalBias=et.normalBias,K.shadowRadius=et.radius,K.shadowMapSize=et.mapSize,K.shadowCameraNear=et.camera.near,K.shadowCameraFar=et.camera.far,n.pointShadow[_]=K,n.pointShadowMap[_]=j,n.pointShadowMatrix[_]=C.shadow.matrix,w++}n.point[_]=Z,_++}else if(C.isHemisphereLight){let Z=t.get(C);Z.skyColor.copy(C.color).multiplyScalar(V),Z.groundColor.copy(C.groundColor).multiplyScalar(V),n.hemi[d]=Z,d++}}m>0&&(i.has("OES_texture_float_linear")===!0?(n.rectAreaLTC1=yt.LTC_FLOAT_1,n.rectAreaLTC2=yt.LTC_FLOAT_2):(n.rectAreaLTC1=yt.LTC_HALF_1,n.rectAreaLTC2=yt.LTC_HALF_2)),n.ambient[0]=u,n.ambient[1]=f,n.ambient[2]=h;let U=n.hash;(U.directionalLength!==p||U.pointLength!==_||U.spotLength!==x||U.rectAreaLength!==m||U.hemiLength!==d||U.numDirectionalShadows!==A||U.numPointShadows!==w||U.numSpotShadows!==b||U.numSpotMaps!==D||U.numLightProbes!==I)&&(n.directional.length=p,n.spot.length=x,n.rectArea.length=m,n.point.length=_,n.hemi.length=d,n.directionalShadow.length=A,n.directionalShadowMap.length=A,n.pointShadow.length=w,n.pointShadowMap.length=w,n.spotShadow.length=b,n.spotShadowMap.length=b,n.directionalShadowMatrix.length=A,n.pointShadowMatrix.length=w,n.spotLightMatrix.length=b+D-L,n.spotLightMap.length=D,n.numSpotLightShadowsWithMaps=L,n.numLightProbes=I,U.directionalLength=p,U.pointLength=_,U.spotLength=x,U.rectAreaLength=m,U.hemiLength=d,U.numDirectionalShadows=A,U.numPointShadows=w,U.numSpotShadows=b,U.numSpotMaps=D,U.numLightProbes=I,n.version=qy++)}function l(c,u){let f=0,h=0,p=0,_=0,x=0,m=u.matrixWorldInverse;for(let d=0,A=c.length;d<A;d++){let w=c[d];if(w.isDirectionalLight){let b=n.directional[f];b.direction.setFromMatrixPosition(w.matrixWorld),s.setFromMatrixPosition(w.target.matrixWorld),b.direction.sub(s),b.direction.transformDirection(m),f++}else if(w.isSpotLight){let b=n.spot[p];b.position.setFromMatrixPosition(w.matrixWorld),b.position.applyMatrix4(m),b.direction.setFromMatrixPosition(w.matrixWorld),s.setFromMatrixPosition(w.target.matrixWorld),b.direction.sub(s),b.direction.transformDirection(m),p++}else if(w.isRectAreaLight){let b=n.rectArea[_];b.position.setFromMatrixPosition(w.matrixWorld),b.position.applyMatrix4(m),o.identity(),r.copy(w.matrixWorld),r.premultiply(m),o.extractRotation(r),b.halfWidth.set(w.width*.5,0,0),b.halfHeight.set(0,w.height*.5,0),b.halfWidth.applyMatrix4(o),b.halfHeight.applyMatrix4(o),_++}else if(w.isPointLight){let b=n.point[h];b.position.setFromMatrixPosition(w.matrixWorld),b.position.applyMatrix4(m),h++}else if(w.isHemisphereLight){let b=n.hemi[x];b.direction.setFromMatrixPosition(w.matrixWorld),b.direction.transformDirection(m),x++}}}return{setup:a,setupView:l,state:n}}function Ef(i){let t=new Zy(i),e=[],n=[];function s(u){c.camera=u,e.length=0,n.length=0}function r(u){e.push(u)}function o(u){n.push(u)}function a(){t.setup(e)}function l(u){t.setupView(e,u)}let c={lightsArray:e,shadowsArray:n,camera:null,lights:t,transmissionRenderTarget:{}};return{init:s,state:c,setupLights:a,setupLightsView:l,pushLight:r,pushShadow:o}}function Jy(i){let t=new WeakMap;function e(s,r=0){let o=t.get(s),a;return o===void 0?(a=new Ef(i),t.set(s,[a])):r>=o.length?(a=new Ef(i),o.push(a)):a=o[r],a}function n(){t=new WeakMap}return{get:e,dispose:n}}var Vc=class extends As{static get type(){return"MeshDepthMaterial"}constructor(t){super(),this.isMeshDepthMaterial=!0,this.depthPacking=Vm,this.map=null,this.alphaMap=null,this.displacementMap=null,this.displacementScale=1,this.displacementBias=0,this.wireframe=!1,this.wireframeLinewidth=1,this.setValues(t)}copy(t){return super.copy(t),this.depthPacking=t.depthPacking,this.map=t.map,this.alphaMap=t.alphaMap,this.displacementMap=t.displacementMap,this.displacementScale=t.displacementScale,this.displacementBias=t.displacementBias,this.wireframe=t.wireframe,this.wireframeLinewidth=t.wireframeLinewidth,this}},Hc=class extends As{static get type(){return"MeshDistanceMaterial"}constructor(t){super(),this.isMeshDistanceMaterial=!0,this.map=null,this.alphaMap=null,this.displacementMap=null,this.displacementScale=1,this.displacementBias=0,this.setValues(t)}copy(t){return super.copy(t),this.map=t.map,this.alphaMap=t.alphaMap,this.displacementMap=t.displacementMap,this.displacementScale=t.displacementScale,this.displacementBias=t.displacementBias,this}},Ky=`void main() {
	gl_Position = vec4( position, 1.0 );
}`,jy=`uniform sampler2D shadow_pass;
uniform vec2 resolution;
uniform float radius;
#include <packing>
void main() {
	const float samples = float( VSM_SAMPLES );
	float mean = 0.0;
	float squared_mean = 0.0;
	float uvStride = samples <= 1.0 ? 0.0 : 2.0 / ( samples - 1.0 );
	float uvStart = samples <= 1.0 ? 0.0 : - 1.0;
	for ( float i = 0.0; i < samples; i ++ ) {
		float uvOffset = uvStart + i * uvStride;
		#ifdef HORIZONTAL_PASS
			vec2 distribution = unpackRGBATo2Half( texture2D( shadow_pass, ( gl_FragCoord.xy + vec2( uvOffset, 0.0 ) * radius ) / resolution ) );
			mean += distribution.x;
			squared_mean += distribution.y * distribution.y + distribution.x * distribution.x;
		#else
			float depth = unpackRGBAToDepth( texture2D( shadow_pass, ( gl_FragCoord.xy + vec2( 0.0, uvOffset ) * radius ) / resolution ) );
			mean += depth;
			squared_mean += depth * depth;
		#endif
	}
	mean = mean / samples;
	squared_mean = squared_mean / samples;
	float std_dev = sqrt( squared_mean - mean * mean );
	gl_FragColor = pack2HalfToRGBA( vec2( mean, std_dev ) );
}`;function Qy(i,t,e){let n=new ma,s=new ie,r=new ie,o=new Fe,a=new Vc({depthPacking:Hm}),l=new Hc,c={},u=e.maxTextureSize,f={[is]:wn,[wn]:is,[ii]:ii},h=new Nn({defines:{VSM_SAMPLES:8},uniforms:{shadow_pass:{value:null},resolution:{value:new ie},radius:{value:4}},vertexShader:Ky,fragmentShader:jy}),p=h.clone();p.defines.HORIZONTAL_PASS=1;let _=new ai;_.setAttribute("position",new an(new Float32Array([-1,-1,.5,3,-1,.5,-1,3,.5]),3));let x=new Ln(_,h),m=this;this.enabled=!1,this.autoUpdate=!0,this.needsUpdate=!1,this.type=If;let d=this.type;this.render=function(L,I,U){if(m.enabled===!1||m.autoUpdate===!1&&m.needsUpdate===!1||L.length===0)return;let E=i.getRenderTarget(),M=i.getActiveCubeFace(),C=i.getActiveMipmapLevel(),W=i.state;W.setBlending(es),W.buffers.color.setClear(1,1,1,1),W.buffers.depth.setTest(!0),W.setScissorTest(!1);let V=d!==Ii&&this.type===Ii,Y=d===Ii&&this.type!==Ii;for(let j=0,Z=L.length;j<Z;j++){let et=L[j],K=et.shadow;if(K===void 0){console.warn("THREE.WebGLShadowMap:",et,"has no shadow.");continue}if(K.autoUpdate===!1&&K.needsUpdate===!1)continue;s.copy(K.mapSize);let ht=K.getFrameExtents();if(s.multiply(ht),r.copy(K.mapSize),(s.x>u||s.y>u)&&(s.x>u&&(r.x=Math.floor(u/ht.x),s.x=r.x*ht.x,K.mapSize.x=r.x),s.y>u&&(r.y=Math.floor(u/ht.y),s.y=r.y*ht.y,K.mapSize.y=r.y)),K.map===null||V===!0||Y===!0){let mt=this.type!==Ii?{minFilter:Dn,magFilter:Dn}:{};K.map!==null&&K.map.dispose(),K.map=new Fi(s.x,s.y,mt),K.map.texture.name=et.name+".shadowMap",K.camera.updateProjectionMatrix()}i.setRenderTarget(K.map),i.clear();let ot=K.getViewportCount();for(let mt=0;mt<ot;mt++){let dt=K.getViewport(mt);o.set(r.x*dt.x,r.y*dt.y,r.x*dt.z,r.y*dt.w),W.viewport(o),K.updateMatrices(et,mt),n=K.getFrustum(),b(I,U,K.camera,et,this.type)}K.isPointLightShadow!==!0&&this.type===Ii&&A(K,U),K.needsUpdate=!1}d=this.type,m.needsUpdate=!1,i.setRenderTarget(E,M,C)};function A(L,I){let U=t.update(x);h.defines.VSM_SAMPLES!==L.blurSamples&&(h.defines.VSM_SAMPLES=L.blurSamples,p.defines.VSM_SAMPLES=L.blurSamples,h.needsUpdate=!0,p.needsUpdate=!0),L.mapPass===null&&(L.mapPass=new Fi(s.x,s.y)),h.uniforms.shadow_pass.value=L.map.texture,h.uniforms.resolution.value=L.mapSize,h.uniforms.radius.value=L.radius,i.setRenderTarget(L.mapPass),i.clear(),i.renderBufferDirect(I,null,U,h,x,null),p.uniforms.shadow_pass.value=L.mapPass.texture,p.uniforms.resolution.value=L.mapSize,p.uniforms.radius.value=L.radius,i.setRenderTarget(L.map),i.clear(),i.renderBufferDirect(I,null,U,p,x,null)}function w(L,I,U,E){let M=null,C=U.isPointLight===!0?L.customDistanceMaterial:L.customDepthMaterial;if(C!==void 0)M=C;else if(M=U.isPointLight===!0?l:a,i.localClippingEnabled&&I.clipShadows===!0&&Array.isArray(I.clippingPlanes)&&I.clippingPlanes.length!==0||I.displacementMap&&I.displacementScale!==0||I.alphaMap&&I.alphaTest>0||I.map&&I.alphaTest>0){let W=M.uuid,V=I.uuid,Y=c[W];Y===void 0&&(Y={},c[W]=Y);let j=Y[V];j===void 0&&(j=M.clone(),Y[V]=j,I.addEventListener("dispose",D)),M=j}if(M.visible=I.visible,M.wireframe=I.wireframe,E===Ii?M.side=I.shadowSide!==null?I.shadowSide:I.side:M.side=I.shadowSide!==null?I.shadowSide:f[I.side],M.alphaMap=I.alphaMap,M.alphaTest=I.alphaTest,M.map=I.map,M.clipShadows=I.clipShadows,M.clippingPlanes=I.clippingPlanes,M.clipIntersection=I.clipIntersection,M.displacementMap=I.displacementMap,M.displacementScale=I.displacementScale,M.displacementBias=I.displacementBias,M.wireframeLinewidth=I.wireframeLinewidth,M.linewidth=I.linewidth,U.isPointLight===!0&&M.isMeshDistanceMaterial===!0){let W=i.properties.get(M);W.light=U}return M}function b(L,I,U,E,M){if(L.visible===!1)return;if(L.layers.test(I.layers)&&(L.isMesh||L.isLine||L.isPoints)&&(L.castShadow||L.receiveShadow&&M===Ii)&&(!L.frustumCulled||n.intersectsObject(L))){L.modelViewMatrix.multiplyMatrices(U.matrixWorldInverse,L.matrixWorld);let V=t.update(L),Y=L.material;if(Array.isArray(Y)){let j=V.groups;for(let Z=0,et=j.length;Z<et;Z++){let K=j[Z],ht=Y[K.materialIndex];if(ht&&ht.visible){let ot=w(L,ht,E,M);L.onBeforeShadow(i,L,I,U,V,ot,K),i.renderBufferDirect(U,null,V,ot,L,K),L.onAfterShadow(i,L,I,U,V,ot,K)}}}else if(Y.visible){let j=w(L,Y,E,M);L.onBeforeShadow(i,L,I,U,V,j,null),i.renderBufferDirect(U,null,V,j,L,null),L.onAfterShadow(i,L,I,U,V,j,null)}}let W=L.children;for(let V=0,Y=W.length;V<Y;V++)b(W[V],I,U,E,M)}function D(L){L.target.removeEventListener("dispose",D);for(let U in c){let E=c[U],M=L.target.uuid;M in E&&(E[M].dispose(),delete E[M])}}}var tv={[Yl]:ql,[$l]:Kl,[Zl]:jl,[xr]:Jl,[ql]:Yl,[Kl]:$l,[jl]:Zl,[Jl]:xr};function ev(i,t){function e(){let N=!1,xt=new Fe,Q=null,st=new Fe(0,0,0,0);return{setMask:function(wt){Q!==wt&&!N&&(i.colorMask(wt,wt,wt,wt),Q=wt)},setLocked:function(wt){N=wt},setClear:function(wt,bt,Jt,Ue,At){At===!0&&(wt*=Ue,bt*=Ue,Jt*=Ue),xt.set(wt,bt,Jt,Ue),st.equals(xt)===!1&&(i.clearColor(wt,bt,Jt,Ue),st.copy(xt))},reset:function(){N=!1,Q=null,st.set(-1,0,0,0)}}}function n(){let N=!1,xt=!1,Q=null,st=null,wt=null;return{setReversed:function(bt){if(xt!==bt){let Jt=t.get("EXT_clip_control");xt?Jt.clipControlEXT(Jt.LOWER_LEFT_EXT,Jt.ZERO_TO_ONE_EXT):Jt.clipControlEXT(Jt.LOWER_LEFT_EXT,Jt.NEGATIVE_ONE_TO_ONE_EXT);let Ue=wt;wt=null,this.setClear(Ue)}xt=bt},getReversed:function(){return xt},setTest:function(bt){bt?ut(i.DEPTH_TEST):Dt(i.DEPTH_TEST)},setMask:function(bt){Q!==bt&&!N&&(i.depthMask(bt),Q=bt)},setFunc:function(bt){if(xt&&(bt=tv[bt]),st!==bt){switch(bt){case Yl:i.depthFunc(i.NEVER);break;case ql:i.depthFunc(i.ALWAYS);break;case $l:i.depthFunc(i.LESS);break;case xr:i.depthFunc(i.LEQUAL);break;case Zl:i.depthFunc(i.EQUAL);break;case Jl:i.depthFunc(i.GEQUAL);break;case Kl:i.depthFunc(i.GREATER);break;case jl:i.depthFunc(i.NOTEQUAL);break;default:i.depthFunc(i.LEQUAL)}st=bt}},setLocked:function(bt){N=bt},setClear:function(bt){wt!==bt&&(xt&&(bt=1-bt),i.clearDepth(bt),wt=bt)},reset:function(){N=!1,Q=null,st=null,wt=null,xt=!1}}}function s(){let N=!1,xt=null,Q=null,st=null,wt=null,bt=null,Jt=null,Ue=null,At=null;return{setTest:function(re){N||(re?ut(i.STENCIL_TEST):Dt(i.STENCIL_TEST))},setMask:function(re){xt!==re&&!N&&(i.stencilMask(re),xt=re)},setFunc:function(re,be,tn){(Q!==re||st!==be||wt!==tn)&&(i.stencilFunc(re,be,tn),Q=re,st=be,wt=tn)},setOp:function(re,be,tn){(bt!==re||Jt!==be||Ue!==tn)&&(i.stencilOp(re,be,tn),bt=re,Jt=be,Ue=tn)},setLocked:function(re){N=re},setClear:function(re){At!==re&&(i.clearStencil(re),At=re)},reset:function(){N=!1,xt=null,Q=null,st=null,wt=null,bt=null,Jt=null,Ue=null,At=null}}}let r=new e,o=new n,a=new s,l=new WeakMap,c=new WeakMap,u={},f={},h=new WeakMap,p=[],_=null,x=!1,m=null,d=null,A=null,w=null,b=null,D=null,L=null,I=new ge(0,0,0),U=0,E=!1,M=null,C=null,W=null,V=null,Y=null,j=i.getParameter(i.MAX_COMBINED_TEXTURE_IMAGE_UNITS),Z=!1,et=0,K=i.getParameter(i.VERSION);K.indexOf("WebGL")!==-1?(et=parseFloat(/^WebGL (\d)/.exec(K)[1]),Z=et>=1):K.indexOf("OpenGL ES")!==-1&&(et=parseFloat(/^OpenGL ES (\d)/.exec(K)[1]),Z=et>=2);let ht=null,ot={},mt=i.getParameter(i.SCISSOR_BOX),dt=i.getParameter(i.VIEWPORT),Gt=new Fe().fromArray(mt),$=new Fe().fromArray(dt);function ct(N,xt,Q,st){let wt=new Uint8Array(4),bt=i.createTexture();i.bindTexture(N,bt),i.texParameteri(N,i.TEXTURE_MIN_FILTER,i.NEAREST),i.texParameteri(N,i.TEXTURE_MAG_FILTER,i.NEAREST);for(let Jt=0;Jt<Q;Jt++)N===i.TEXTURE_3D||N===i.TEXTURE_2D_ARRAY?i.texImage3D(xt,0,i.RGBA,1,1,st,0,i.RGBA,i.UNSIGNED_BYTE,wt):i.texImage2D(xt+Jt,0,i.RGBA,1,1,0,i.RGBA,i.UNSIGNED_BYTE,wt);return bt}let It={};It[i.TEXTURE_2D]=ct(i.TEXTURE_2D,i.TEXTURE_2D,1),It[i.TEXTURE_CUBE_MAP]=ct(i.TEXTURE_CUBE_MAP,i.TEXTURE_CUBE_MAP_POSITIVE_X,6),It[i.TEXTURE_2D_ARRAY]=ct(i.TEXTURE_2D_ARRAY,i.TEXTURE_2D_ARRAY,1,1),It[i.TEXTURE_3D]=ct(i.TEXTURE_3D,i.TEXTURE_3D,1,1),r.setClear(0,0,0,1),o.setClear(1),a.setClear(0),ut(i.DEPTH_TEST),o.setFunc(xr),ee(!1),Zt(Eu),ut(i.CULL_FACE),z(es);function ut(N){u[N]!==!0&&(i.enable(N),u[N]=!0)}function Dt(N){u[N]!==!1&&(i.disable(N),u[N]=!1)}function Ht(N,xt){return f[N]!==xt?(i.bindFramebuffer(N,xt),f[N]=xt,N===i.DRAW_FRAMEBUFFER&&(f[i.FRAMEBUFFER]=xt),N===i.FRAMEBUFFER&&(f[i.DRAW_FRAMEBUFFER]=xt),!0):!1}function zt(N,xt){let Q=p,st=!1;if(N){Q=h.get(xt),Q===void 0&&(Q=[],h.set(xt,Q));let wt=N.textures;if(Q.length!==wt.length||Q[0]!==i.COLOR_ATTACHMENT0){for(let bt=0,Jt=wt.length;bt<Jt;bt++)Q[bt]=i.COLOR_ATTACHMENT0+bt;Q.length=wt.length,st=!0}}else Q[0]!==i.BACK&&(Q[0]=i.BACK,st=!0);st&&i.drawBuffers(Q)}function se(N){return _!==N?(i.useProgram(N),_=N,!0):!1}let jt={[vs]:i.FUNC_ADD,[pm]:i.FUNC_SUBTRACT,[mm]:i.FUNC_REVERSE_SUBTRACT};jt[gm]=i.MIN,jt[_m]=i.MAX;let Se={[xm]:i.ZERO,[ym]:i.ONE,[vm]:i.SRC_COLOR,[Wl]:i.SRC_ALPHA,[Tm]:i.SRC_ALPHA_SATURATE,[wm]:i.DST_COLOR,[Sm]:i.DST_ALPHA,[Mm]:i.ONE_MINUS_SRC_COLOR,[Xl]:i.ONE_MINUS_SRC_ALPHA,[Em]:i.ONE_MINUS_DST_COLOR,[bm]:i.ONE_MINUS_DST_ALPHA,[Am]:i.CONSTANT_COLOR,[Cm]:i.ONE_MINUS_CONSTANT_COLOR,[Rm]:i.CONSTANT_ALPHA,[Pm]:i.ONE_MINUS_CONSTANT_ALPHA};function z(N,xt,Q,st,wt,bt,Jt,Ue,At,re){if(N===es){x===!0&&(Dt(i.BLEND),x=!1);return}if(x===!1&&(ut(i.BLEND),x=!0),N!==dm){if(N!==m||re!==E){if((d!==vs||b!==vs)&&(i.blendEquation(i.FUNC_ADD),d=vs,b=vs),re)switch(N){case pr:i.blendFuncSeparate(i.ONE,i.ONE_MINUS_SRC_ALPHA,i.ONE,i.ONE_MINUS_SRC_ALPHA);break;case Tu:i.blendFunc(i.ONE,i.ONE);break;case Au:i.blendFuncSeparate(i.ZERO,i.ONE_MINUS_SRC_COLOR,i.ZERO,i.ONE);break;case Cu:i.blendFuncSeparate(i.ZERO,i.SRC_COLOR,i.ZERO,i.SRC_ALPHA);break;default:console.error("THREE.WebGLState: Invalid blending: ",N);break}else switch(N){case pr:i.blendFuncSeparate(i.SRC_ALPHA,i.ONE_MINUS_SRC_ALPHA,i.ONE,i.ONE_MINUS_SRC_ALPHA);break;case Tu:i.blendFunc(i.SRC_ALPHA,i.ONE);break;case Au:i.blendFuncSeparate(i.ZERO,i.ONE_MINUS_SRC_COLOR,i.ZERO,i.ONE);break;case Cu:i.blendFunc(i.ZERO,i.SRC_COLOR);break;default:console.error("THREE.WebGLState: Invalid blending: ",N);break}A=null,w=null,D=null,L=null,I.set(0,0,0),U=0,m=N,E=re}return}wt=wt||xt,bt=bt||Q,Jt=Jt||st,(xt!==d||wt!==b)&&(i.blendEquationSeparate(jt[xt],jt[wt]),d=xt,b=wt),(Q!==A||st!==w||bt!==D||Jt!==L)&&(i.blendFuncSeparate(Se[Q],Se[st],Se[bt],Se[Jt]),A=Q,w=st,D=bt,L=Jt),(Ue.equals(I)===!1||At!==U)&&(i.blendColor(Ue.r,Ue.g,Ue.b,At),I.copy(Ue),U=At),m=N,E=!1}function qe(N,xt){N.side===ii?Dt(i.CULL_FACE):ut(i.CULL_FACE);let Q=N.side===wn;xt&&(Q=!Q),ee(Q),N.blending===pr&&N.transparent===!1?z(es):z(N.blending,N.blendEquation,N.blendSrc,N.blendDst,N.blendEquationAlpha,N.blendSrcAlpha,N.blendDstAlpha,N.blendColor,N.blendAlpha,N.premultipliedAlpha),o.setFunc(N.depthFunc),o.setTest(N.depthTest),o.setMask(N.depthWrite),r.setMask(N.colorWrite);let st=N.stencilWrite;a.setTest(st),st&&(a.setMask(N.stencilWriteMask),a.setFunc(N.stencilFunc,N.stencilRef,N.stencilFuncMask),a.setOp(N.stencilFail,N.stencilZFail,N.stencilZPass)),xe(N.polygonOffset,N.polygonOffsetFactor,N.polygonOffsetUnits),N.alphaToCoverage===!0?ut(i.SAMPLE_ALPHA_TO_COVERAGE):Dt(i.SAMPLE_ALPHA_TO_COVERAGE)}function ee(N){M!==N&&(N?i.frontFace(i.CW):i.frontFace(i.CCW),M=N)}function Zt(N){N!==hm?(ut(i.CULL_FACE),N!==C&&(N===Eu?i.cullFace(i.BACK):N===um?i.cullFace(i.FRONT):i.cullFace(i.FRONT_AND_BACK))):Dt(i.CULL_FACE),C=N}function Ut(N){N!==W&&(Z&&i.lineWidth(N),W=N)}function xe(N,xt,Q){N?(ut(i.POLYGON_OFFSET_FILL),(V!==xt||Y!==Q)&&(i.polygonOffset(xt,Q),V=xt,Y=Q)):Dt(i.POLYGON_OFFSET_FILL)}function Ft(N){N?ut(i.SCISSOR_TEST):Dt(i.SCISSOR_TEST)}function T(N){N===void 0&&(N=i.TEXTURE0+j-1),ht!==N&&(i.activeTexture(N),ht=N)}function y(N,xt,Q){Q===void 0&&(ht===null?Q=i.TEXTURE0+j-1:Q=ht);let st=ot[Q];st===void 0&&(st={type:void 0,texture:void 0},ot[Q]=st),(st.type!==N||st.texture!==xt)&&(ht!==Q&&(i.activeTexture(Q),ht=Q),i.bindTexture(N,xt||It[N]),st.type=N,st.texture=xt)}function B(){let N=ot[ht];N!==void 0&&N.type!==void 0&&(i.bindTexture(N.type,null),N.type=void 0,N.texture=void 0)}function nt(){try{i.compressedTexImage2D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function J(){try{i.compressedTexImage3D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function tt(){try{i.texSubImage2D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function Pt(){try{i.texSubImage3D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function gt(){try{i.compressedTexSubImage2D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function vt(){try{i.compressedTexSubImage3D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function Xt(){try{i.texStorage2D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function at(){try{i.texStorage3D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function _t(){try{i.texImage2D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function Bt(){try{i.texImage3D.apply(i,arguments)}catch(N){console.error("THREE.WebGLState:",N)}}function Vt(N){Gt.equals(N)===!1&&(i.scissor(N.x,N.y,N.z,N.w),Gt.copy(N))}function St(N){$.equals(N)===!1&&(i.viewport(N.x,N.y,N.z,N.w),$.copy(N))}function Qt(N,xt){let Q=c.get(xt);Q===void 0&&(Q=new WeakMap,c.set(xt,Q));let st=Q.get(N);st===void 0&&(st=i.getUniformBlockIndex(xt,N.name),Q.set(N,st))}function Yt(N,xt){let st=c.get(xt).get(N);l.get(xt)!==st&&(i.uniformBlockBinding(xt,st,N.__bindingPointIndex),l.set(xt,st))}function me(){i.disable(i.BLEND),i.disable(i.CULL_FACE),i.disable(i.DEPTH_TEST),i.disable(i.POLYGON_OFFSET_FILL),i.disable(i.SCISSOR_TEST),i.disable(i.STENCIL_TEST),i.disable(i.SAMPLE_ALPHA_TO_COVERAGE),i.blendEquation(i.FUNC_ADD),i.blendFunc(i.ONE,i.ZERO),i.blendFuncSeparate(i.ONE,i.ZERO,i.ONE,i.ZERO),i.blendColor(0,0,0,0),i.colorMask(!0,!0,!0,!0),i.clearColor(0,0,0,0),i.depthMask(!0),i.depthFunc(i.LESS),o.setReversed(!1),i.clearDepth(1),i.stencilMask(4294967295),i.stencilFunc(i.ALWAYS,0,4294967295),i.stencilOp(i.KEEP,i.KEEP,i.KEEP),i.clearStencil(0),i.cullFace(i.BACK),i.frontFace(i.CCW),i.polygonOffset(0,0),i.activeTexture(i.TEXTURE0),i.bindFramebuffer(i.FRAMEBUFFER,null),i.bindFramebuffer(i.DRAW_FRAMEBUFFER,null),i.bindFramebuffer(i.READ_FRAMEBUFFER,null),i.useProgram(null),i.lineWidth(1),i.scissor(0,0,i.canvas.width,i.canvas.height),i.viewport(0,0,i.canvas.width,i.canvas.height),u={},ht=null,ot={},f={},h=new WeakMap,p=[],_=null,x=!1,m=null,d=null,A=null,w=null,b=null,D=null,L=null,I=new ge(0,0,0),U=0,E=!1,M=null,C=null,W=null,V=null,Y=null,Gt.set(0,0,i.canvas.width,i.canvas.height),$.set(0,0,i.canvas.width,i.canvas.height),r.reset(),o.reset(),a.reset()}return{buffers:{color:r,depth:o,stencil:a},enable:ut,disable:Dt,bindFramebuffer:Ht,drawBuffers:zt,useProgram:se,setBlending:z,setMaterial:qe,setFlipSided:ee,setCullFace:Zt,setLineWidth:Ut,setPolygonOffset:xe,setScissorTest:Ft,activeTexture:T,bindTexture:y,unbindTexture:B,compressedTexImage2D:nt,compressedTexImage3D:J,texImage2D:_t,texImage3D:Bt,updateUBOMapping:Qt,uniformBlockBinding:Yt,texStorage2D:Xt,texStorage3D:at,texSubImage2D:tt,texSubImage3D:Pt,compressedTexSubImage2D:gt,compressedTexSubImage3D:vt,scissor:Vt,viewport:St,reset:me}}function Tf(i,t,e,n){let s=nv(n);switch(e){case Ff:return i*t;case kf:return i*t;case zf:return i*t*2;case Vf:return i*t/s.components*s.byteLength;case lh:return i*t/s.components*s.byteLength;case Hf:return i*t*2/s.components*s.byteLength;case ch:return i*t*2/s.components*s.byteLength;case Bf:return i*t*3/s.components*s.byteLength;case si:return i*t*4/s.components*s.byteLength;case hh:return i*t*4/s.components*s.byteLength;case Qo:case ta:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*8;case ea:case na:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*16;case sc:case oc:return Math.max(i,16)*Math.max(t,8)/4;case ic:case rc:return Math.max(i,8)*Math.max(t,8)/2;case ac:case lc:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*8;case cc:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*16;case hc:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*16;case uc:return Math.floor((i+4)/5)*Math.floor((t+3)/4)*16;case fc:return Math.floor((i+4)/5)*Math.floor((t+4)/5)*16;case dc:return Math.floor((i+5)/6)*Math.floor((t+4)/5)*16;case pc:return Math.floor((i+5)/6)*Math.floor((t+5)/6)*16;case mc:return Math.floor((i+7)/8)*Math.floor((t+4)/5)*16;case gc:return Math.floor((i+7)/8)*Math.floor((t+5)/6)*16;case _c:return Math.floor((i+7)/8)*Math.floor((t+7)/8)*16;case xc:return Math.floor((i+9)/10)*Math.floor((t+4)/5)*16;case yc:return Math.floor((i+9)/10)*Math.floor((t+5)/6)*16;case vc:return Math.floor((i+9)/10)*Math.floor((t+7)/8)*16;case Mc:return Math.floor((i+9)/10)*Math.floor((t+9)/10)*16;case Sc:return Math.floor((i+11)/12)*Math.floor((t+9)/10)*16;case bc:return Math.floor((i+11)/12)*Math.floor((t+11)/12)*16;case ia:case wc:case Ec:return Math.ceil(i/4)*Math.ceil(t/4)*16;case Gf:case Tc:return Math.ceil(i/4)*Math.ceil(t/4)*8;case Ac:case Cc:return Math.ceil(i/4)*Math.ceil(t/4)*16}throw new Error(`Unable to determine texture byte length for ${e} format.`)}function nv(i){switch(i){case Ni:case Uf:return{byteLength:1,components:1};case ro:case Nf:case ho:return{byteLength:2,components:1};case oh:case ah:return{byteLength:2,components:4};case Es:case rh:case Li:return{byteLength:4,components:1};case Of:return{byteLength:4,components:3}}throw new Error(`Unknown texture type ${i}.`)}function iv(i,t,e,n,s,r,o){let a=t.has("WEBGL_multisampled_render_to_texture")?t.get("WEBGL_multisampled_render_to_texture"):null,l=typeof navigator>"u"?!1:/OculusBrowser/g.test(navigator.userAgent),c=new ie,u=new WeakMap,f,h=new WeakMap,p=!1;try{p=typeof OffscreenCanvas<"u"&&new OffscreenCanvas(1,1).getContext("2d")!==null}catch{}function _(T,y){return p?new OffscreenCanvas(T,y):oa("canvas")}function x(T,y,B){let nt=1,J=Ft(T);if((J.width>B||J.height>B)&&(nt=B/Math.max(J.width,J.height)),nt<1)if(typeof HTMLImageElement<"u"&&T instanceof HTMLImageElement||typeof HTMLCanvasElement<"u"&&T instanceof HTMLCanvasElement||typeof ImageBitmap<"u"&&T instanceof ImageBitmap||typeof VideoFrame<"u"&&T instanceof VideoFrame){let tt=Math.floor(nt*J.width),Pt=Math.floor(nt*J.height);f===void 0&&(f=_(tt,Pt));let gt=y?_(tt,Pt):f;return gt.width=tt,gt.height=Pt,gt.getContext("2d").drawImage(T,0,0,tt,Pt),console.warn("THREE.WebGLRenderer: Texture has been resized from ("+J.width+"x"+J.height+") to ("+tt+"x"+Pt+")."),gt}else return"data"in T&&console.warn("THREE.WebGLRenderer: Image in DataTexture is too big ("+J.width+"x"+J.height+")."),T;return T}function m(T){return T.generateMipmaps}function d(T){i.generateMipmap(T)}function A(T){return T.isWebGLCubeRenderTarget?i.TEXTURE_CUBE_MAP:T.isWebGL3DRenderTarget?i.TEXTURE_3D:T.isWebGLArrayRenderTarget||T.isCompressedArrayTexture?i.TEXTURE_2D_ARRAY:i.TEXTURE_2D}function w(T,y,B,nt,J=!1){if(T!==null){if(i[T]!==void 0)return i[T];console.warn("THREE.WebGLRenderer: Attempt to use non-existing WebGL internal format '"+T+"'")}let tt=y;if(y===i.RED&&(B===i.FLOAT&&(tt=i.R32F),B===i.HALF_FLOAT&&(tt=i.R16F),B===i.UNSIGNED_BYTE&&(tt=i.R8)),y===i.RED_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.R8UI),B===i.UNSIGNED_SHORT&&(tt=i.R16UI),B===i.UNSIGNED_INT&&(tt=i.R32UI),B===i.BYTE&&(tt=i.R8I),B===i.SHORT&&(tt=i.R16I),B===i.INT&&(tt=i.R32I)),y===i.RG&&(B===i.FLOAT&&(tt=i.RG32F),B===i.HALF_FLOAT&&(tt=i.RG16F),B===i.UNSIGNED_BYTE&&(tt=i.RG8)),y===i.RG_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.RG8UI),B===i.UNSIGNED_SHORT&&(tt=i.RG16UI),B===i.UNSIGNED_INT&&(tt=i.RG32UI),B===i.BYTE&&(tt=i.RG8I),B===i.SHORT&&(tt=i.RG16I),B===i.INT&&(tt=i.RG32I)),y===i.RGB_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.RGB8UI),B===i.UNSIGNED_SHORT&&(tt=i.RGB16UI),B===i.UNSIGNED_INT&&(tt=i.RGB32UI),B===i.BYTE&&(tt=i.RGB8I),B===i.SHORT&&(tt=i.RGB16I),B===i.INT&&(tt=i.RGB32I)),y===i.RGBA_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.RGBA8UI),B===i.UNSIGNED_SHORT&&(tt=i.RGBA16UI),B===i.UNSIGNED_INT&&(tt=i.RGBA32UI),B===i.BYTE&&(tt=i.RGBA8I),B===i.SHORT&&(tt=i.RGBA16I),B===i.INT&&(tt=i.RGBA32I)),y===i.RGB&&B===i.UNSIGNED_INT_5_9_9_9_REV&&(tt=i.RGB9_E5),y===i.RGBA){let Pt=J?Ca:de.getTransfer(nt);B===i.FLOAT&&(tt=i.RGBA32F),B===i.HALF_FLOAT&&(tt=i.RGBA16F),B===i.UNSIGNED_BYTE&&(tt=Pt===Ee?i.SRGB8_ALPHA8:i.RGBA8),B===i.UNSIGNED_SHORT_4_4_4_4&&(tt=i.RGBA4),B===i.UNSIGNED_SHORT_5_5_5_1&&(tt=i.RGB5_A1)}return(tt===i.R16F||tt===i.R32F||tt===i.RG16F||tt===i.RG32F||tt===i.RGBA16F||tt===i.RGBA32F)&&t.get("EXT_color_buffer_float"),tt}function b(T,y){let B;return T?y===null||y===Es||y===Mr?B=i.DEPTH24_STENCIL8:y===Li?B=i.DEPTH32F_STENCIL8:y===ro&&(B=i.DEPTH24_STENCIL8,console.warn("DepthTexture: 16 bit depth attachment is not supported with stencil. Using 24-bit attachment.")):y===null||y===Es||y===Mr?B=i.DEPTH_COMPONENT24:y===Li?B=i.DEPTH_COMPONENT32F:y===ro&&(B=i.DEPTH_COMPONENT16),B}function D(T,y){return m(T)===!0||T.isFramebufferTexture&&T.minFilter!==Dn&&T.minFilter!==Xn?Math.log2(Math.max(y.width,y.height))+1:T.mipmaps!==void 0&&T.mipmaps.length>0?T.mipmaps.length:T.isCompressedTexture&&Array.isArray(T.image)?y.mipmaps.length:1}function L(T){let y=T.target;y.removeEventListener("dispose",L),U(y),y.isVideoTexture&&u.delete(y)}function I(T){let y=T.target;y.removeEventListener("dispose",I),M(y)}function U(T){let y=n.get(T);if(y.__webglInit===void 0)return;let B=T.source,nt=h.get(B);if(nt){let J=nt[y.__cacheKey];J.usedTimes--,J.usedTimes===0&&E(T),Object.keys(nt).length===0&&h.delete(B)}n.remove(T)}function E(T){let y=n.get(T);i.deleteTexture(y.__webglTexture);let B=T.source,nt=h.get(B);delete nt[y.__cacheKey],o.memory.textures--}function M(T){let y=n.get(T);if(T.depthTexture&&(T.depthTexture.dispose(),n.remove(T.depthTexture)),T.isWebGLCubeRenderTarget)for(let nt=0;nt<6;nt++){if(Array.isArray(y.__webglFramebuffer[nt]))for(let J=0;J<y.__webglFramebuffer[nt].length;J++)i.deleteFramebuffer(y.__webglFramebuffer[nt][J]);else i.deleteFramebuffer(y.__webglFramebuffer[nt]);y.__webglDepthbuffer&&i.deleteRenderbuffer(y.__webglDepthbuffer[nt])}else{if(Array.isArray(y.__webglFramebuffer))for(let nt=0;nt<y.__webglFramebuffer.length;nt++)i.deleteFramebuffer(y.__webglFramebuffer[nt]);else i.deleteFramebuffer(y.__webglFramebuffer);if(y.__webglDepthbuffer&&i.deleteRenderbuffer(y.__webglDepthbuffer),y.__webglMultisampledFramebuffer&&i.deleteFramebuffer(y.__webglMultisampledFramebuffer),y.__webglColorRenderbuffer)for(let nt=0;nt<y.__webglColorRenderbuffer.length;nt++)y.__webglColorRenderbuffer[nt]&&i.deleteRenderbuffer(y.__webglColorRenderbuffer[nt]);y.__webglDepthRenderbuffer&&i.deleteRenderbuffer(y.__webglDepthRenderbuffer)}let B=T.textures;for(let nt=0,J=B.length;nt<J;nt++){let tt=n.get(B[nt]);tt.__webglTexture&&(i.deleteTexture(tt.__webglTexture),o.memory.textures--),n.remove(B[nt])}n.remove(T)}let C=0;function W(){C=0}function V(){let T=C;return T>=s.maxTextures&&console.warn("THREE.WebGLTextures: Trying to use "+T+" texture units while this GPU supports only "+s.maxTextures),C+=1,T}function Y(T){let y=[];return y.push(T.wrapS),y.push(T.wrapT),y.push(T.wrapR||0),y.push(T.magFilter),y.push(T.minFilter),y.push(T.anisotropy),y.push(T.internalFormat),y.push(T.format),y.push(T.type),y.push(T.generateMipmaps),y.push(T.premultiplyAlpha),y.push(T.flipY),y.push(T.unpackAlignment),y.push(T.colorSpace),y.join()}function j(T,y){let B=n.get(T);if(T.isVideoTexture&&Ut(T),T.isRenderTargetTexture===!1&&T.version>0&&B.__version!==T.version){let nt=T.image;if(nt===null)console.warn("THREE.WebGLRenderer: Texture marked for update but no image data found.");else if(nt.complete===!1)console.warn("THREE.WebGLRenderer: Texture marked for update but image is incomplete");else{$(B,T,y);return}}e.bindTexture(i.TEXTURE_2D,B.__webglTexture,i.TEXTURE0+y)}function Z(T,y){let B=n.get(T);if(T.version>0&&B.__version!==T.version){$(B,T,y);return}e.bindTexture(i.TEXTURE_2D_ARRAY,B.__webglTexture,i.TEXTURE0+y)}function et(T,y){let B=n.get(T);if(T.version>0&&B.__version!==T.version){$(B,T,y);return}e.bindTexture(i.TEXTURE_3D,B.__webglTexture,i.TEXTURE0+y)}function K(T,y){let B=n.get(T);if(T.version>0&&B.__version!==T.version){ct(B,T,y);return}e.bindTexture(i.TEXTURE_CUBE_MAP,B.__webglTexture,i.TEXTURE0+y)}let ht={[ec]:i.REPEAT,[bs]:i.CLAMP_TO_EDGE,[nc]:i.MIRRORED_REPEAT},ot={[Dn]:i.NEAREST,[zm]:i.NEAREST_MIPMAP_NEAREST,[Ro]:i.NEAREST_MIPMAP_LINEAR,[Xn]:i.LINEAR,[ml]:i.LINEAR_MIPMAP_NEAREST,[ws]:i.LINEAR_MIPMAP_LINEAR},mt={[Xm]:i.NEVER,[Km]:i.ALWAYS,[Ym]:i.LESS,[Wf]:i.LEQUAL,[qm]:i.EQUAL,[Jm]:i.GEQUAL,[$m]:i.GREATER,[Zm]:i.NOTEQUAL};function dt(T,y){if(y.type===Li&&t.has("OES_texture_float_linear")===!1&&(y.magFilter===Xn||y.magFilter===ml||y.magFilter===Ro||y.magFilter===ws||y.minFilter===Xn||y.minFilter===ml||y.minFilter===Ro||y.minFilter===ws)&&console.warn("THREE.WebGLRenderer: Unable to use linear filtering with floating point textures. OES_texture_float_linear not supported on this device."),i.texParameteri(T,i.TEXTURE_WRAP_S,ht[y.wrapS]),i.texParameteri(T,i.TEXTURE_WRAP_T,ht[y.wrapT]),(T===i.TEXTURE_3D||T===i.TEXTURE_2D_ARRAY)&&i.texParameteri(T,i.TEXTURE_WRAP_R,ht[y.wrapR]),i.texParameteri(T,i.TEXTURE_MAG_FILTER,ot[y.magFilter]),i.texParameteri(T,i.TEXTURE_MIN_FILTER,ot[y.minFilter]),y.compareFunction&&(i.texParameteri(T,i.TEXTURE_COMPARE_MODE,i.COMPARE_REF_TO_TEXTURE),i.texParameteri(T,i.TEXTURE_COMPARE_FUNC,mt[y.compareFunction])),t.has("EXT_texture_filter_anisotropic")===!0){if(y.magFilter===Dn||y.minFilter!==Ro&&y.minFilter!==ws||y.type===Li&&t.has("OES_texture_float_linear")===!1)return;if(y.anisotropy>1||n.get(y).__currentAnisotropy){let B=t.get("EXT_texture_filter_anisotropic");i.texParameterf(T,B.TEXTURE_MAX_ANISOTROPY_EXT,Math.min(y.anisotropy,s.getMaxAnisotropy())),n.get(y).__currentAnisotropy=y.anisotropy}}}function Gt(T,y){let B=!1;T.__webglInit===void 0&&(T.__webglInit=!0,y.addEventListener("dispose",L));let nt=y.source,J=h.get(nt);J===void 0&&(J={},h.set(nt,J));let tt=Y(y);if(tt!==T.__cacheKey){J[tt]===void 0&&(J[tt]={texture:i.createTexture(),usedTimes:0},o.memory.textures++,B=!0),J[tt].usedTimes++;let Pt=J[T.__cacheKey];Pt!==void 0&&(J[T.__cacheKey].usedTimes--,Pt.usedTimes===0&&E(y)),T.__cacheKey=tt,T.__webglTexture=J[tt].texture}return B}function $(T,y,B){let nt=i.TEXTURE_2D;(y.isDataArrayTexture||y.isCompressedArrayTexture)&&(nt=i.TEXTURE_2D_ARRAY),y.isData3DTexture&&(nt=i.TEXTURE_3D);let J=Gt(T,y),tt=y.source;e.bindTexture(nt,T.__webglTexture,i.TEXTURE0+B);let Pt=n.get(tt);if(tt.version!==Pt.__version||J===!0){e.activeTexture(i.TEXTURE0+B);let gt=de.getPrimaries(de.workingColorSpace),vt=y.colorSpace===ts?null:de.getPrimaries(y.colorSpace),Xt=y.colorSpace===ts||gt===vt?i.NONE:i.BROWSER_DEFAULT_WEBGL;i.pixelStorei(i.UNPACK_FLIP_Y_WEBGL,y.flipY),i.pixelStorei(i.UNPACK_PREMULTIPLY_ALPHA_WEBGL,y.premultiplyAlpha),i.pixelStorei(i.UNPACK_ALIGNMENT,y.unpackAlignment),i.pixelStorei(i.UNPACK_COLORSPACE_CONVERSION_WEBGL,Xt);let at=x(y.image,!1,s.maxTextureSize);at=xe(y,at);let _t=r.convert(y.format,y.colorSpace),Bt=r.convert(y.type),Vt=w(y.internalFormat,_t,Bt,y.colorSpace,y.isVideoTexture);dt(nt,y);let St,Qt=y.mipmaps,Yt=y.isVideoTexture!==!0,me=Pt.__version===void 0||J===!0,N=tt.dataReady,xt=D(y,at);if(y.isDepthTexture)Vt=b(y.format===Sr,y.type),me&&(Yt?e.texStorage2D(i.TEXTURE_2D,1,Vt,at.width,at.height):e.texImage2D(i.TEXTURE_2D,0,Vt,at.width,at.height,0,_t,Bt,null));else if(y.isDataTexture)if(Qt.length>0){Yt&&me&&e.texStorage2D(i.TEXTURE_2D,xt,Vt,Qt[0].width,Qt[0].height);for(let Q=0,st=Qt.length;Q<st;Q++)St=Qt[Q],Yt?N&&e.texSubImage2D(i.TEXTURE_2D,Q,0,0,St.width,St.height,_t,Bt,St.data):e.texImage2D(i.TEXTURE_2D,Q,Vt,St.width,St.height,0,_t,Bt,St.data);y.generateMipmaps=!1}else Yt?(me&&e.texStorage2D(i.TEXTURE_2D,xt,Vt,at.width,at.height),N&&e.texSubImage2D(i.TEXTURE_2D,0,0,0,at.width,at.height,_t,Bt,at.data)):e.texImage2D(i.TEXTURE_2D,0,Vt,at.width,at.height,0,_t,Bt,at.data);else if(y.isCompressedTexture)if(y.isCompressedArrayTexture){Yt&&me&&e.texStorage3D(i.TEXTURE_2D_ARRAY,xt,Vt,Qt[0].width,Qt[0].height,at.depth);for(let Q=0,st=Qt.length;Q<st;Q++)if(St=Qt[Q],y.format!==si)if(_t!==null)if(Yt){if(N)if(y.layerUpdates.size>0){let wt=Tf(St.width,St.height,y.format,y.type);for(let bt of y.layerUpdates){let Jt=St.data.subarray(bt*wt/St.data.BYTES_PER_ELEMENT,(bt+1)*wt/St.data.BYTES_PER_ELEMENT);e.compressedTexSubImage3D(i.TEXTURE_2D_ARRAY,Q,0,0,bt,St.width,St.height,1,_t,Jt)}y.clearLayerUpdates()}else e.compressedTexSubImage3D(i.TEXTURE_2D_ARRAY,Q,0,0,0,St.width,St.height,at.depth,_t,St.data)}else e.compressedTexImage3D(i.TEXTURE_2D_ARRAY,Q,Vt,St.width,St.height,at.depth,0,St.data,0,0);else console.warn("THREE.WebGLRenderer: Attempt to load unsupported compressed texture format in .uploadTexture()");else Yt?N&&e.texSubImage3D(i.TEXTURE_2D_ARRAY,Q,0,0,0,St.width,St.height,at.depth,_t,Bt,St.data):e.texImage3D(i.TEXTURE_2D_ARRAY,Q,Vt,St.width,St.height,at.depth,0,_t,Bt,St.data)}else{Yt&&me&&e.texStorage2D(i.TEXTURE_2D,xt,Vt,Qt[0].width,Qt[0].height);for(let Q=0,st=Qt.length;Q<st;Q++)St=Qt[Q],y.format!==si?_t!==null?Yt?N&&e.compressedTexSubImage2D(i.TEXTURE_2D,Q,0,0,St.width,St.height,_t,St.data):e.compressedTexImage2D(i.TEXTURE_2D,Q,Vt,St.width,St.height,0,St.data):console.warn("THREE.WebGLRenderer: Attempt to load unsupported compressed texture format in .uploadTexture()"):Yt?N&&e.texSubImage2D(i.TEXTURE_2D,Q,0,0,St.width,St.height,_t,Bt,St.data):e.texImage2D(i.TEXTURE_2D,Q,Vt,St.width,St.height,0,_t,Bt,St.data)}else if(y.isDataArrayTexture)if(Yt){if(me&&e.texStorage3D(i.TEXTURE_2D_ARRAY,xt,Vt,at.width,at.height,at.depth),N)if(y.layerUpdates.size>0){let Q=Tf(at.width,at.height,y.format,y.type);for(let st of y.layerUpdates){let wt=at.data.subarray(st*Q/at.data.BYTES_PER_ELEMENT,(st+1)*Q/at.data.BYTES_PER_ELEMENT);e.texSubImage3D(i.TEXTURE_2D_ARRAY,0,0,0,st,at.width,at.height,1,_t,Bt,wt)}y.clearLayerUpdates()}else e.texSubImage3D(i.TEXTURE_2D_ARRAY,0,0,0,0,at.width,at.height,at.depth,_t,Bt,at.data)}else e.texImage3D(i.TEXTURE_2D_ARRAY,0,Vt,at.width,at.height,at.depth,0,_t,Bt,at.data);else if(y.isData3DTexture)Yt?(me&&e.texStorage3D(i.TEXTURE_3D,xt,Vt,at.width,at.height,at.depth),N&&e.texSubImage3D(i.TEXTURE_3D,0,0,0,0,at.width,at.height,at.depth,_t,Bt,at.data)):e.texImage3D(i.TEXTURE_3D,0,Vt,at.width,at.height,at.depth,0,_t,Bt,at.data);else if(y.isFramebufferTexture){if(me)if(Yt)e.texStorage2D(i.TEXTURE_2D,xt,Vt,at.width,at.height);else{let Q=at.width,st=at.height;for(let wt=0;wt<xt;wt++)e.texImage2D(i.TEXTURE_2D,wt,Vt,Q,st,0,_t,Bt,null),Q>>=1,st>>=1}}else if(Qt.length>0){if(Yt&&me){let Q=Ft(Qt[0]);e.texStorage2D(i.TEXTURE_2D,xt,Vt,Q.width,Q.height)}for(let Q=0,st=Qt.length;Q<st;Q++)St=Qt[Q],Yt?N&&e.texSubImage2D(i.TEXTURE_2D,Q,0,0,_t,Bt,St):e.texImage2D(i.TEXTURE_2D,Q,Vt,_t,Bt,St);y.generateMipmaps=!1}else if(Yt){if(me){let Q=Ft(at);e.texStorage2D(i.TEXTURE_2D,xt,Vt,Q.width,Q.height)}N&&e.texSubImage2D(i.TEXTURE_2D,0,0,0,_t,Bt,at)}else e.texImage2D(i.TEXTURE_2D,0,Vt,_t,Bt,at);m(y)&&d(nt),Pt.__version=tt.version,y.onUpdate&&y.onUpdate(y)}T.__version=y.version}function ct(T,y,B){if(y.image.length!==6)return;let nt=Gt(T,y),J=y.source;e.bindTexture(i.TEXTURE_CUBE_MAP,T.__webglTexture,i.TEXTURE0+B);let tt=n.get(J);if(J.version!==tt.__version||nt===!0){e.activeTexture(i.TEXTURE0+B);let Pt=de.getPrimaries(de.workingColorSpace),gt=y.colorSpace===ts?null:de.getPrimaries(y.colorSpace),vt=y.colorSpace===ts||Pt===gt?i.NONE:i.BROWSER_DEFAULT_WEBGL;i.pixelStorei(i.UNPACK_FLIP_Y_WEBGL,y.flipY),i.pixelStorei(i.UNPACK_PREMULTIPLY_ALPHA_WEBGL,y.premultiplyAlpha),i.pixelStorei(i.UNPACK_ALIGNMENT,y.unpackAlignment),i.pixelStorei(i.UNPACK_COLORSPACE_CONVERSION_WEBGL,vt);let Xt=y.isCompressedTexture||y.image[0].isCompressedTexture,at=y.image[0]&&y.image[0].isDataTexture,_t=[];for(let st=0;st<6;st++)!Xt&&!at?_t[st]=x(y.image[st],!0,s.maxCubemapSize):_t[st]=at?y.image[st].image:y.image[st],_t[st]=xe(y,_t[st]);let Bt=_t[0],Vt=r.convert(y.format,y.colorSpace),St=r.convert(y.type),Qt=w(y.internalFormat,Vt,St,y.colorSpace),Yt=y.isVideoTexture!==!0,me=tt.__version===void 0||nt===!0,N=J.dataReady,xt=D(y,Bt);dt(i.TEXTURE_CUBE_MAP,y);let Q;if(Xt){Yt&&me&&e.texStorage2D(i.TEXTURE_CUBE_MAP,xt,Qt,Bt.width,Bt.height);for(let st=0;st<6;st++){Q=_t[st].mipmaps;for(let wt=0;wt<Q.length;wt++){let bt=Q[wt];y.format!==si?Vt!==null?Yt?N&&e.compressedTexSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,0,0,bt.width,bt.height,Vt,bt.data):e.compressedTexImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,Qt,bt.width,bt.height,0,bt.data):console.warn("THREE.WebGLRenderer: Attempt to load unsupported compressed texture format in .setTextureCube()"):Yt?N&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,0,0,bt.width,bt.height,Vt,St,bt.data):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,Qt,bt.width,bt.height,0,Vt,St,bt.data)}}}else{if(Q=y.mipmaps,Yt&&me){Q.length>0&&xt++;let st=Ft(_t[0]);e.texStorage2D(i.TEXTURE_CUBE_MAP,xt,Qt,st.width,st.height)}for(let st=0;st<6;st++)if(at){Yt?N&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,0,0,_t[st].width,_t[st].height,Vt,St,_t[st].data):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,Qt,_t[st].width,_t[st].height,0,Vt,St,_t[st].data);for(let wt=0;wt<Q.length;wt++){let Jt=Q[wt].image[st].image;Yt?N&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,0,0,Jt.width,Jt.height,Vt,St,Jt.data):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,Qt,Jt.width,Jt.height,0,Vt,St,Jt.data)}}else{Yt?N&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,0,0,Vt,St,_t[st]):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,Qt,Vt,St,_t[st]);for(let wt=0;wt<Q.length;wt++){let bt=Q[wt];Yt?N&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,0,0,Vt,St,bt.image[st]):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,Qt,Vt,St,bt.image[st])}}}m(y)&&d(i.TEXTURE_CUBE_MAP),tt.__version=J.version,y.onUpdate&&y.onUpdate(y)}T.__version=y.version}function It(T,y,B,nt,J,tt){let Pt=r.convert(B.format,B.colorSpace),gt=r.convert(B.type),vt=w(B.internalFormat,Pt,gt,B.colorSpace),Xt=n.get(y),at=n.get(B);if(at.__renderTarget=y,!Xt.__hasExternalTextures){let _t=Math.max(1,y.width>>tt),Bt=Math.max(1,y.height>>tt);J===i.TEXTURE_3D||J===i.TEXTURE_2D_ARRAY?e.texImage3D(J,tt,vt,_t,Bt,y.depth,0,Pt,gt,null):e.texImage2D(J,tt,vt,_t,Bt,0,Pt,gt,null)}e.bindFramebuffer(i.FRAMEBUFFER,T),Zt(y)?a.framebufferTexture2DMultisampleEXT(i.FRAMEBUFFER,nt,J,at.__webglTexture,0,ee(y)):(J===i.TEXTURE_2D||J>=i.TEXTURE_CUBE_MAP_POSITIVE_X&&J<=i.TEXTURE_CUBE_MAP_NEGATIVE_Z)&&i.framebufferTexture2D(i.FRAMEBUFFER,nt,J,at.__webglTexture,tt),e.bindFramebuffer(i.FRAMEBUFFER,null)}function ut(T,y,B){if(i.bindRenderbuffer(i.RENDERBUFFER,T),y.depthBuffer){let nt=y.depthTexture,J=nt&&nt.isDepthTexture?nt.type:null,tt=b(y.stencilBuffer,J),Pt=y.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,gt=ee(y);Zt(y)?a.renderbufferStorageMultisampleEXT(i.RENDERBUFFER,gt,tt,y.width,y.height):B?i.renderbufferStorageMultisample(i.RENDERBUFFER,gt,tt,y.width,y.height):i.renderbufferStorage(i.RENDERBUFFER,tt,y.width,y.height),i.framebufferRenderbuffer(i.FRAMEBUFFER,Pt,i.RENDERBUFFER,T)}else{let nt=y.textures;for(let J=0;J<nt.length;J++){let tt=nt[J],Pt=r.convert(tt.format,tt.colorSpace),gt=r.convert(tt.type),vt=w(tt.internalFormat,Pt,gt,tt.colorSpace),Xt=ee(y);B&&Zt(y)===!1?i.renderbufferStorageMultisample(i.RENDERBUFFER,Xt,vt,y.width,y.height):Zt(y)?a.renderbufferStorageMultisampleEXT(i.RENDERBUFFER,Xt,vt,y.width,y.height):i.renderbufferStorage(i.RENDERBUFFER,vt,y.width,y.height)}}i.bindRenderbuffer(i.RENDERBUFFER,null)}function Dt(T,y){if(y&&y.isWebGLCubeRenderTarget)throw new Error("Depth Texture with cube render targets is not supported");if(e.bindFramebuffer(i.FRAMEBUFFER,T),!(y.depthTexture&&y.depthTexture.isDepthTexture))throw new Error("renderTarget.depthTexture must be an instance of THREE.DepthTexture");let nt=n.get(y.depthTexture);nt.__renderTarget=y,(!nt.__webglTexture||y.depthTexture.image.width!==y.width||y.depthTexture.image.height!==y.height)&&(y.depthTexture.image.width=y.width,y.depthTexture.image.height=y.height,y.depthTexture.needsUpdate=!0),j(y.depthTexture,0);let J=nt.__webglTexture,tt=ee(y);if(y.depthTexture.format===mr)Zt(y)?a.framebufferTexture2DMultisampleEXT(i.FRAMEBUFFER,i.DEPTH_ATTACHMENT,i.TEXTURE_2D,J,0,tt):i.framebufferTexture2D(i.FRAMEBUFFER,i.DEPTH_ATTACHMENT,i.TEXTURE_2D,J,0);else if(y.depthTexture.format===Sr)Zt(y)?a.framebufferTexture2DMultisampleEXT(i.FRAMEBUFFER,i.DEPTH_STENCIL_ATTACHMENT,i.TEXTURE_2D,J,0,tt):i.framebufferTexture2D(i.FRAMEBUFFER,i.DEPTH_STENCIL_ATTACHMENT,i.TEXTURE_2D,J,0);else throw new Error("Unknown depthTexture format")}function Ht(T){let y=n.get(T),B=T.isWebGLCubeRenderTarget===!0;if(y.__boundDepthTexture!==T.depthTexture){let nt=T.depthTexture;if(y.__depthDisposeCallback&&y.__depthDisposeCallback(),nt){let J=()=>{delete y.__boundDepthTexture,delete y.__depthDisposeCallback,nt.removeEventListener("dispose",J)};nt.addEventListener("dispose",J),y.__depthDisposeCallback=J}y.__boundDepthTexture=nt}if(T.depthTexture&&!y.__autoAllocateDepthBuffer){if(B)throw new Error("target.depthTexture not supported in Cube render targets");Dt(y.__webglFramebuffer,T)}else if(B){y.__webglDepthbuffer=[];for(let nt=0;nt<6;nt++)if(e.bindFramebuffer(i.FRAMEBUFFER,y.__webglFramebuffer[nt]),y.__webglDepthbuffer[nt]===void 0)y.__webglDepthbuffer[nt]=i.createRenderbuffer(),ut(y.__webglDepthbuffer[nt],T,!1);else{let J=T.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,tt=y.__webglDepthbuffer[nt];i.bindRenderbuffer(i.RENDERBUFFER,tt),i.framebufferRenderbuffer(i.FRAMEBUFFER,J,i.RENDERBUFFER,tt)}}else if(e.bindFramebuffer(i.FRAMEBUFFER,y.__webglFramebuffer),y.__webglDepthbuffer===void 0)y.__webglDepthbuffer=i.createRenderbuffer(),ut(y.__webglDepthbuffer,T,!1);else{let nt=T.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,J=y.__webglDepthbuffer;i.bindRenderbuffer(i.RENDERBUFFER,J),i.framebufferRenderbuffer(i.FRAMEBUFFER,nt,i.RENDERBUFFER,J)}e.bindFramebuffer(i.FRAMEBUFFER,null)}function zt(T,y,B){let nt=n.get(T);y!==void 0&&It(nt.__webglFramebuffer,T,T.texture,i.COLOR_ATTACHMENT0,i.TEXTURE_2D,0),B!==void 0&&Ht(T)}function se(T){let y=T.texture,B=n.get(T),nt=n.get(y);T.addEventListener("dispose",I);let J=T.textures,tt=T.isWebGLCubeRenderTarget===!0,Pt=J.length>1;if(Pt||(nt.__webglTexture===void 0&&(nt.__webglTexture=i.createTexture()),nt.__version=y.version,o.memory.textures++),tt){B.__webglFramebuffer=[];for(let gt=0;gt<6;gt++)if(y.mipmaps&&y.mipmaps.length>0){B.__webglFramebuffer[gt]=[];for(let vt=0;vt<y.mipmaps.length;vt++)B.__webglFramebuffer[gt][vt]=i.createFramebuffer()}else B.__webglFramebuffer[gt]=i.createFramebuffer()}else{if(y.mipmaps&&y.mipmaps.length>0){B.__webglFramebuffer=[];for(let gt=0;gt<y.mipmaps.length;gt++)B.__webglFramebuffer[gt]=i.createFramebuffer()}else B.__webglFramebuffer=i.createFramebuffer();if(Pt)for(let gt=0,vt=J.length;gt<vt;gt++){let Xt=n.get(J[gt]);Xt.__webglTexture===void 0&&(Xt.__webglTexture=i.createTexture(),o.memory.textures++)}if(T.samples>0&&Zt(T)===!1){B.__webglMultisampledFramebuffer=i.createFramebuffer(),B.__webglColorRenderbuffer=[],e.bindFramebuffer(i.FRAMEBUFFER,B.__webglMultisampledFramebuffer);for(let gt=0;gt<J.length;gt++){let vt=J[gt];B.__webglColorRenderbuffer[gt]=i.createRenderbuffer(),i.bindRenderbuffer(i.RENDERBUFFER,B.__webglColorRenderbuffer[gt]);let Xt=r.convert(vt.format,vt.colorSpace),at=r.convert(vt.type),_t=w(vt.internalFormat,Xt,at,vt.colorSpace,T.isXRRenderTarget===!0),Bt=ee(T);i.renderbufferStorageMultisample(i.RENDERBUFFER,Bt,_t,T.width,T.height),i.framebufferRenderbuffer(i.FRAMEBUFFER,i.COLOR_ATTACHMENT0+gt,i.RENDERBUFFER,B.__webglColorRenderbuffer[gt])}i.bindRenderbuffer(i.RENDERBUFFER,null),T.depthBuffer&&(B.__webglDepthRenderbuffer=i.createRenderbuffer(),ut(B.__webglDepthRenderbuffer,T,!0)),e.bindFramebuffer(i.FRAMEBUFFER,null)}}if(tt){e.bindTexture(i.TEXTURE_CUBE_MAP,nt.__webglTexture),dt(i.TEXTURE_CUBE_MAP,y);for(let gt=0;gt<6;gt++)if(y.mipmaps&&y.mipmaps.length>0)for(let vt=0;vt<y.mipmaps.length;vt++)It(B.__webglFramebuffer[gt][vt],T,y,i.COLOR_ATTACHMENT0,i.TEXTURE_CUBE_MAP_POSITIVE_X+gt,vt);else It(B.__webglFramebuffer[gt],T,y,i.COLOR_ATTACHMENT0,i.TEXTURE_CUBE_MAP_POSITIVE_X+gt,0);m(y)&&d(i.TEXTURE_CUBE_MAP),e.unbindTexture()}else if(Pt){for(let gt=0,vt=J.length;gt<vt;gt++){let Xt=J[gt],at=n.get(Xt);e.bindTexture(i.TEXTURE_2D,at.__webglTexture),dt(i.TEXTURE_2D,Xt),It(B.__webglFramebuffer,T,Xt,i.COLOR_ATTACHMENT0+gt,i.TEXTURE_2D,0),m(Xt)&&d(i.TEXTURE_2D)}e.unbindTexture()}else{let gt=i.TEXTURE_2D;if((T.isWebGL3DRenderTarget||T.isWebGLArrayRenderTarget)&&(gt=T.isWebGL3DRenderTarget?i.TEXTURE_3D:i.TEXTURE_2D_ARRAY),e.bindTexture(gt,nt.__webglTexture),dt(gt,y),y.mipmaps&&y.mipmaps.length>0)for(let vt=0;vt<y.mipmaps.length;vt++)It(B.__webglFramebuffer[vt],T,y,i.COLOR_ATTACHMENT0,gt,vt);else It(B.__webglFramebuffer,T,y,i.COLOR_ATTACHMENT0,gt,0);m(y)&&d(gt),e.unbindTexture()}T.depthBuffer&&Ht(T)}function jt(T){let y=T.textures;for(let B=0,nt=y.length;B<nt;B++){let J=y[B];if(m(J)){let tt=A(T),Pt=n.get(J).__webglTexture;e.bindTexture(tt,Pt),d(tt),e.unbindTexture()}}}let Se=[],z=[];function qe(T){if(T.samples>0){if(Zt(T)===!1){let y=T.textures,B=T.width,nt=T.height,J=i.COLOR_BUFFER_BIT,tt=T.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,Pt=n.get(T),gt=y.length>1;if(gt)for(let vt=0;vt<y.length;vt++)e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglMultisampledFramebuffer),i.framebufferRenderbuffer(i.FRAMEBUFFER,i.COLOR_ATTACHMENT0+vt,i.RENDERBUFFER,null),e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglFramebuffer),i.framebufferTexture2D(i.DRAW_FRAMEBUFFER,i.COLOR_ATTACHMENT0+vt,i.TEXTURE_2D,null,0);e.bindFramebuffer(i.READ_FRAMEBUFFER,Pt.__webglMultisampledFramebuffer),e.bindFramebuffer(i.DRAW_FRAMEBUFFER,Pt.__webglFramebuffer);for(let vt=0;vt<y.length;vt++){if(T.resolveDepthBuffer&&(T.depthBuffer&&(J|=i.DEPTH_BUFFER_BIT),T.stencilBuffer&&T.resolveStencilBuffer&&(J|=i.STENCIL_BUFFER_BIT)),gt){i.framebufferRenderbuffer(i.READ_FRAMEBUFFER,i.COLOR_ATTACHMENT0,i.RENDERBUFFER,Pt.__webglColorRenderbuffer[vt]);let Xt=n.get(y[vt]).__webglTexture;i.framebufferTexture2D(i.DRAW_FRAMEBUFFER,i.COLOR_ATTACHMENT0,i.TEXTURE_2D,Xt,0)}i.blitFramebuffer(0,0,B,nt,0,0,B,nt,J,i.NEAREST),l===!0&&(Se.length=0,z.length=0,Se.push(i.COLOR_ATTACHMENT0+vt),T.depthBuffer&&T.resolveDepthBuffer===!1&&(Se.push(tt),z.push(tt),i.invalidateFramebuffer(i.DRAW_FRAMEBUFFER,z)),i.invalidateFramebuffer(i.READ_FRAMEBUFFER,Se))}if(e.bindFramebuffer(i.READ_FRAMEBUFFER,null),e.bindFramebuffer(i.DRAW_FRAMEBUFFER,null),gt)for(let vt=0;vt<y.length;vt++){e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglMultisampledFramebuffer),i.framebufferRenderbuffer(i.FRAMEBUFFER,i.COLOR_ATTACHMENT0+vt,i.RENDERBUFFER,Pt.__webglColorRenderbuffer[vt]);let Xt=n.get(y[vt]).__webglTexture;e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglFramebuffer),i.framebufferTexture2D(i.DRAW_FRAMEBUFFER,i.COLOR_ATTACHMENT0+vt,i.TEXTURE_2D,Xt,0)}e.bindFramebuffer(i.DRAW_FRAMEBUFFER,Pt.__webglMultisampledFramebuffer)}else if(T.depthBuffer&&T.resolveDepthBuffer===!1&&l){let y=T.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT;i.invalidateFramebuffer(i.DRAW_FRAMEBUFFER,[y])}}}function ee(T){return Math.min(s.maxSamples,T.samples)}function Zt(T){let y=n.get(T);return T.samples>0&&t.has("WEBGL_multisampled_render_to_texture")===!0&&y.__useRenderToTexture!==!1}function Ut(T){let y=o.render.frame;u.get(T)!==y&&(u.set(T,y),T.update())}function xe(T,y){let B=T.colorSpace,nt=T.format,J=T.type;return T.isCompressedTexture===!0||T.isVideoTexture===!0||B!==ss&&B!==ts&&(de.getTransfer(B)===Ee?(nt!==si||J!==Ni)&&console.warn("THREE.WebGLTextures: sRGB encoded textures have to use RGBAFormat and UnsignedByteType."):console.error("THREE.WebGLTextures: Unsupported texture color space:",B)),y}function Ft(T){return typeof HTMLImageElement<"u"&&T instanceof HTMLImageElement?(c.width=T.naturalWidth||T.width,c.height=T.naturalHeight||T.height):typeof VideoFrame<"u"&&T instanceof VideoFrame?(c.width=T.displayWidth,c.height=T.displayHeight):(c.width=T.width,c.height=T.height),c}this.allocateTextureUnit=V,this.resetTextureUnits=W,this.setTexture2D=j,this.setTexture2DArray=Z,this.setTexture3D=et,this.setTextureCube=K,this.rebindTextures=zt,this.setupRenderTarget=se,this.updateRenderTargetMipmap=jt,this.updateMultisampleRenderTarget=qe,this.setupDepthRenderbuffer=Ht,this.setupFrameBufferTexture=It,this.useMultisampledRTT=Zt}function sv(i,t){function e(n,s=ts){let r,o=de.getTransfer(s);if(n===Ni)return i.UNSIGNED_BYTE;if(n===oh)return i.UNSIGNED_SHORT_4_4_4_4;if(n===ah)return i.UNSIGNED_SHORT_5_5_5_1;if(n===Of)return i.UNSIGNED_INT_5_9_9_9_REV;if(n===Uf)return i.BYTE;if(n===Nf)return i.SHORT;if(n===ro)return i.UNSIGNED_SHORT;if(n===rh)return i.INT;if(n===Es)return i.UNSIGNED_INT;if(n===Li)return i.FLOAT;if(n===ho)return i.HALF_FLOAT;if(n===Ff)return i.ALPHA;if(n===Bf)return i.RGB;if(n===si)return i.RGBA;if(n===kf)return i.LUMINANCE;if(n===zf)return i.LUMINANCE_ALPHA;if(n===mr)return i.DEPTH_COMPONENT;if(n===Sr)return i.DEPTH_STENCIL;if(n===Vf)return i.RED;if(n===lh)return i.RED_INTEGER;if(n===Hf)return i.RG;if(n===ch)return i.RG_INTEGER;if(n===hh)return i.RGBA_INTEGER;if(n===Qo||n===ta||n===ea||n===na)if(o===Ee)if(r=t.get("WEBGL_compressed_texture_s3tc_srgb"),r!==null){if(n===Qo)return r.COMPRESSED_SRGB_S3TC_DXT1_EXT;if(n===ta)return r.COMPRESSED_SRGB_ALPHA_S3TC_DXT1_EXT;if(n===ea)return r.COMPRESSED_SRGB_ALPHA_S3TC_DXT3_EXT;if(n===na)return r.COMPRESSED_SRGB_ALPHA_S3TC_DXT5_EXT}else return null;else if(r=t.get("WEBGL_compressed_texture_s3tc"),r!==null){if(n===Qo)return r.COMPRESSED_RGB_S3TC_DXT1_EXT;if(n===ta)return r.COMPRESSED_RGBA_S3TC_DXT1_EXT;if(n===ea)return r.COMPRESSED_RGBA_S3TC_DXT3_EXT;if(n===na)return r.COMPRESSED_RGBA_S3TC_DXT5_EXT}else return null;if(n===ic||n===sc||n===rc||n===oc)if(r=t.get("WEBGL_compressed_texture_pvrtc"),r!==null){if(n===ic)return r.COMPRESSED_RGB_PVRTC_4BPPV1_IMG;if(n===sc)return r.COMPRESSED_RGB_PVRTC_2BPPV1_IMG;if(n===rc)return r.COMPRESSED_RGBA_PVRTC_4BPPV1_IMG;if(n===oc)return r.COMPRESSED_RGBA_PVRTC_2BPPV1_IMG}else return null;if(n===ac||n===lc||n===cc)if(r=t.get("WEBGL_compressed_texture_etc"),r!==null){if(n===ac||n===lc)return o===Ee?r.COMPRESSED_SRGB8_ETC2:r.COMPRESSED_RGB8_ETC2;if(n===cc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ETC2_EAC:r.COMPRESSED_RGBA8_ETC2_EAC}else return null;if(n===hc||n===uc||n===fc||n===dc||n===pc||n===mc||n===gc||n===_c||n===xc||n===yc||n===vc||n===Mc||n===Sc||n===bc)if(r=t.get("WEBGL_compressed_texture_astc"),r!==null){if(n===hc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_4x4_KHR:r.COMPRESSED_RGBA_ASTC_4x4_KHR;if(n===uc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_5x4_KHR:r.COMPRESSED_RGBA_ASTC_5x4_KHR;if(n===fc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_5x5_KHR:r.COMPRESSED_RGBA_ASTC_5x5_KHR;if(n===dc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_6x5_KHR:r.COMPRESSED_RGBA_ASTC_6x5_KHR;if(n===pc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_6x6_KHR:r.COMPRESSED_RGBA_ASTC_6x6_KHR;if(n===mc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_8x5_KHR:r.COMPRESSED_RGBA_ASTC_8x5_KHR;if(n===gc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_8x6_KHR:r.COMPRESSED_RGBA_ASTC_8x6_KHR;if(n===_c)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_8x8_KHR:r.COMPRESSED_RGBA_ASTC_8x8_KHR;if(n===xc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x5_KHR:r.COMPRESSED_RGBA_ASTC_10x5_KHR;if(n===yc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x6_KHR:r.COMPRESSED_RGBA_ASTC_10x6_KHR;if(n===vc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x8_KHR:r.COMPRESSED_RGBA_ASTC_10x8_KHR;if(n===Mc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x10_KHR:r.COMPRESSED_RGBA_ASTC_10x10_KHR;if(n===Sc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_12x10_KHR:r.COMPRESSED_RGBA_ASTC_12x10_KHR;if(n===bc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_12x12_KHR:r.COMPRESSED_RGBA_ASTC_12x12_KHR}else return null;if(n===ia||n===wc||n===Ec)if(r=t.get("EXT_texture_compression_bptc"),r!==null){if(n===ia)return o===Ee?r.COMPRESSED_SRGB_ALPHA_BPTC_UNORM_EXT:r.COMPRESSED_RGBA_BPTC_UNORM_EXT;if(n===wc)return r.COMPRESSED_RGB_BPTC_SIGNED_FLOAT_EXT;if(n===Ec)return r.COMPRESSED_RGB_BPTC_UNSIGNED_FLOAT_EXT}else return null;if(n===Gf||n===Tc||n===Ac||n===Cc)if(r=t.get("EXT_texture_compression_rgtc"),r!==null){if(n===ia)return r.COMPRESSED_RED_RGTC1_EXT;if(n===Tc)return r.COMPRESSED_SIGNED_RED_RGTC1_EXT;if(n===Ac)return r.COMPRESSED_RED_GREEN_RGTC2_EXT;if(n===Cc)return r.COMPRESSED_SIGNED_RED_GREEN_RGTC2_EXT}else return null;return n===Mr?i.UNSIGNED_INT_24_8:i[n]!==void 0?i[n]:null}return{convert:e}}var Gc=class extends In{constructor(t=[]){super(),this.isArrayCamera=!0,this.cameras=t}},dr=class extends Yn{constructor(){super(),this.isGroup=!0,this.type="Group"}},rv={type:"move"},so=class{constructor(){this._targetRay=null,this._grip=null,this._hand=null}getHandSpace(){return this._hand===null&&(this._hand=new dr,this._hand.matrixAutoUpdate=!1,this._hand.visible=!1,this._hand.joints={},this._hand.inputState={pinching:!1}),this._hand}getTargetRaySpace(){return this._targetRay===null&&(this._targetRay=new dr,this._targetRay.matrixAutoUpdate=!1,this._targetRay.visible=!1,this._targetRay.hasLinearVelocity=!1,this._targetRay.linearVelocity=new H,this._targetRay.hasAngularVelocity=!1,this._targetRay.angularVelocity=new H),this._targetRay}getGripSpace(){return this._grip===null&&(this._grip=new dr,this._grip.matrixAutoUpdate=!1,this._grip.visible=!1,this._grip.hasLinearVelocity=!1,this._grip.linearVelocity=new H,this._grip.hasAngularVelocity=!1,this._grip.angularVelocity=new H),this._grip}dispatchEvent(t){return this._targetRay!==null&&this._targetRay.dispatchEvent(t),this._grip!==null&&this._grip.dispatchEvent(t),this._hand!==null&&this._hand.dispatchEvent(t),this}connect(t){if(t&&t.hand){let e=this._hand;if(e)for(let n of t.hand.values())this._getHandJoint(e,n)}return this.dispatchEvent({type:"connected",data:t}),this}disconnect(t){return this.dispatchEvent({type:"disconnected",data:t}),this._targetRay!==null&&(this._targetRay.visible=!1),this._grip!==null&&(this._grip.visible=!1),this._hand!==null&&(this._hand.visible=!1),this}update(t,e,n){let s=null,r=null,o=null,a=this._targetRay,l=this._grip,c=this._hand;if(t&&e.session.visibilityState!=="visible-blurred"){if(c&&t.hand){o=!0;for(let x of t.hand.values()){let m=e.getJointPose(x,n),d=this._getHandJoint(c,x);m!==null&&(d.matrix.fromArray(m.transform.matrix),d.matrix.decompose(d.position,d.rotation,d.scale),d.matrixWorldNeedsUpdate=!0,d.jointRadius=m.radius),d.visible=m!==null}let u=c.joints["index-finger-tip"],f=c.joints["thumb-tip"],h=u.position.distanceTo(f.position),p=.02,_=.005;c.inputState.pinching&&h>p+_?(c.inputState.pinching=!1,this.dispatchEvent({type:"pinchend",handedness:t.handedness,target:this})):!c.inputState.pinching&&h<=p-_&&(c.inputState.pinching=!0,this.dispatchEvent({type:"pinchstart",handedness:t.handedness,target:this}))}else l!==null&&t.gripSpace&&(r=e.getPose(t.gripSpace,n),r!==null&&(l.matrix.fromArray(r.transform.matrix),l.matrix.decompose(l.position,l.rotation,l.scale),l.matrixWorldNeedsUpdate=!0,r.linearVelocity?(l.hasLinearVelocity=!0,l.linearVelocity.copy(r.linearVelocity)):l.hasLinearVelocity=!1,r.angularVelocity?(l.hasAngularVelocity=!0,l.angularVelocity.copy(r.angularVelocity)):l.hasAngularVelocity=!1));a!==null&&(s=e.getPose(t.targetRaySpace,n),s===null&&r!==null&&(s=r),s!==null&&(a.matrix.fromArray(s.transform.matrix),a.matrix.decompose(a.position,a.rotation,a.scale),a.matrixWorldNeedsUpdate=!0,s.linearVelocity?(a.hasLinearVelocity=!0,a.linearVelocity.copy(s.linearVelocity)):a.hasLinearVelocity=!1,s.angularVelocity?(a.hasAngularVelocity=!0,a.angularVelocity.copy(s.angularVelocity)):a.hasAngularVelocity=!1,this.dispatchEvent(rv)))}return a!==null&&(a.visible=s!==null),l!==null&&(l.visible=r!==null),c!==null&&(c.visible=o!==null),this}_getHandJoint(t,e){if(t.joints[e.jointName]===void 0){let n=new dr;n.matrixAutoUpdate=!1,n.visible=!1,t.joints[e.jointName]=n,t.add(n)}return t.joints[e.jointName]}},ov=`
void main() {

	gl_Position = vec4( position, 1.0 );

}`,av=`
uniform sampler2DArray depthColor;
uniform float depthWidth;
uniform float depthHeight;

void main() {

	vec2 coord = vec2( gl_FragCoord.x / depthWidth, gl_FragCoord.y / depthHeight );

	if ( coord.x >= 1.0 ) {

		gl_FragDepth = texture( depthColor, vec3( coord.x - 1.0, coord.y, 1 ) ).r;

	} else {

		gl_FragDepth = texture( depthColor, vec3( coord.x, coord.y, 0 ) ).r;

	}

}`,Wc=class{constructor(){this.texture=null,this.mesh=null,this.depthNear=0,this.depthFar=0}init(t,e,n){if(this.texture===null){let s=new Un,r=t.properties.get(s);r.__webglTexture=e.texture,(e.depthNear!=n.depthNear||e.depthFar!=n.depthFar)&&(this.depthNear=e.depthNear,this.depthFar=e.depthFar),this.texture=s}}getMesh(t){if(this.texture!==null&&this.mesh===null){let e=t.cameras[0].viewport,n=new Nn({vertexShader:ov,fragmentShader:av,uniforms:{depthColor:{value:this.texture},depthWidth:{value:e.z},depthHeight:{value:e.w}}});this.mesh=new Ln(new ga(20,20),n)}return this.mesh}reset(){this.texture=null,this.mesh=null}getDepthTexture(){return this.texture}},Xc=class extends Oi{constructor(t,e){super();let n=this,s=null,r=1,o=null,a="local-floor",l=1,c=null,u=null,f=null,h=null,p=null,_=null,x=new Wc,m=e.getContextAttributes(),d=null,A=null,w=[],b=[],D=new ie,L=null,I=new In;I.viewport=new Fe;let U=new In;U.viewport=new Fe;let E=[I,U],M=new Gc,C=null,W=null;this.cameraAutoUpdate=!0,this.enabled=!1,this.isPresenting=!1,this.getController=function($){let ct=w[$];return ct===void 0&&(ct=new so,w[$]=ct),ct.getTargetRaySpace()},this.getControllerGrip=function($){let ct=w[$];return ct===void 0&&(ct=new so,w[$]=ct),ct.getGripSpace()},this.getHand=function($){let ct=w[$];return ct===void 0&&(ct=new so,w[$]=ct),ct.getHandSpace()};function V($){let ct=b.indexOf($.inputSource);if(ct===-1)return;let It=w[ct];It!==void 0&&(It.update($.inputSource,$.frame,c||o),It.dispatchEvent({type:$.type,data:$.inputSource}))}function Y(){s.removeEventListener("select",V),s.removeEventListener("selectstart",V),s.removeEventListener("selectend",V),s.removeEventListener("squeeze",V),s.removeEventListener("squeezestart",V),s.removeEventListener("squeezeend",V),s.removeEventListener("end",Y),s.removeEventListener("inputsourceschange",j);for(let $=0;$<w.length;$++){let ct=b[$];ct!==null&&(b[$]=null,w[$].disconnect(ct))}C=null,W=null,x.reset(),t.setRenderTarget(d),p=null,h=null,f=null,s=null,A=null,Gt.stop(),n.isPresenting=!1,t.setPixelRatio(L),t.setSize(D.width,D.height,!1),n.dispatchEvent({type:"sessionend"})}this.setFramebufferScaleFactor=function($){r=$,n.isPresenting===!0&&console.warn("THREE.WebXRManager: Cannot change framebuffer scale while presenting.")},this.setReferenceSpaceType=function($){a=$,n.isPresenting===!0&&console.warn("THREE.WebXRManager: Cannot change reference space type while presenting.")},this.getReferenceSpace=function(){return c||o},this.setReferenceSpace=function($){c=$},this.getBaseLayer=function(){return h!==null?h:p},this.getBinding=function(){return f},this.getFrame=function(){return _},this.getSession=function(){return s},this.setSession=async function($){if(s=$,s!==null){if(d=t.getRenderTarget(),s.addEventListener("select",V),s.addEventListener("selectstart",V),s.addEventListener("selectend",V),s.addEventListener("squeeze",V),s.addEventListener("squeezestart",V),s.addEventListener("squeezeend",V),s.addEventListener("end",Y),s.addEventListener("inputsourceschange",j),m.xrCompatible!==!0&&await e.makeXRCompatible(),L=t.getPixelRatio(),t.getSize(D),s.renderState.layers===void 0){let ct={antialias:m.antialias,alpha:!0,depth:m.depth,stencil:m.stencil,framebufferScaleFactor:r};p=new XRWebGLLayer(s,e,ct),s.updateRenderState({baseLayer:p}),t.setPixelRatio(1),t.setSize(p.framebufferWidth,p.framebufferHeight,!1),A=new Fi(p.framebufferWidth,p.framebufferHeight,{format:si,type:Ni,colorSpace:t.outputColorSpace,stencilBuffer:m.stencil})}else{let ct=null,It=null,ut=null;m.depth&&(ut=m.stencil?e.DEPTH24_STENCIL8:e.DEPTH_COMPONENT24,ct=m.stencil?Sr:mr,It=m.stencil?Mr:Es);let Dt={colorFormat:e.RGBA8,depthFormat:ut,scaleFactor:r};f=new XRWebGLBinding(s,e),h=f.createProjectionLayer(Dt),s.updateRenderState({layers:[h]}),t.setPixelRatio(1),t.setSize(h.textureWidth,h.textureHeight,!1),A=new Fi(h.textureWidth,h.textureHeight,{format:si,type:Ni,depthTexture:new xa(h.textureWidth,h.textureHeight,It,void 0,void 0,void 0,void 0,void 0,void 0,ct),stencilBuffer:m.stencil,colorSpace:t.outputColorSpace,samples:m.antialias?4:0,resolveDepthBuffer:h.ignoreDepthValues===!1})}A.isXRRenderTarget=!0,this.setFoveation(l),c=null,o=await s.requestReferenceSpace(a),Gt.setContext(s),Gt.start(),n.isPresenting=!0,n.dispatchEvent({type:"sessionstart"})}},this.getEnvironmentBlendMode=function(){if(s!==null)return s.environmentBlendMode},this.getDepthTexture=function(){return x.getDepthTexture()};function j($){for(let ct=0;ct<$.removed.length;ct++){let It=$.removed[ct],ut=b.indexOf(It);ut>=0&&(b[ut]=null,w[ut].disconnect(It))}for(let ct=0;ct<$.added.length;ct++){let It=$.added[ct],ut=b.indexOf(It);if(ut===-1){for(let Ht=0;Ht<w.length;Ht++)if(Ht>=b.length){b.push(It),ut=Ht;break}else if(b[Ht]===null){b[Ht]=It,ut=Ht;break}if(ut===-1)break}let Dt=w[ut];Dt&&Dt.connect(It)}}let Z=new H,et=new H;function K($,ct,It){Z.setFromMatrixPosition(ct.matrixWorld),et.setFromMatrixPosition(It.matrixWorld);let ut=Z.distanceTo(et),Dt=ct.projectionMatrix.elements,Ht=It.projectionMatrix.elements,zt=Dt[14]/(Dt[10]-1),se=Dt[14]/(Dt[10]+1),jt=(Dt[9]+1)/Dt[5],Se=(Dt[9]-1)/Dt[5],z=(Dt[8]-1)/Dt[0],qe=(Ht[8]+1)/Ht[0],ee=zt*z,Zt=zt*qe,Ut=ut/(-z+qe),xe=Ut*-z;if(ct.matrixWorld.decompose($.position,$.quaternion,$.scale),$.translateX(xe),$.translateZ(Ut),$.matrixWorld.compose($.position,$.quaternion,$.scale),$.matrixWorldInverse.copy($.matrixWorld).invert(),Dt[10]===-1)$.projectionMatrix.copy(ct.projectionMatrix),$.projectionMatrixInverse.copy(ct.projectionMatrixInverse);else{let Ft=zt+Ut,T=se+Ut,y=ee-xe,B=Zt+(ut-xe),nt=jt*se/T*Ft,J=Se*se/T*Ft;$.projectionMatrix.makePerspective(y,B,nt,J,Ft,T),$.projectionMatrixInverse.copy($.projectionMatrix).invert()}}function ht($,ct){ct===null?$.matrixWorld.copy($.matrix):$.matrixWorld.multiplyMatrices(ct.matrixWorld,$.matrix),$.matrixWorldInverse.copy($.matrixWorld).invert()}this.updateCamera=function($){if(s===null)return;let ct=$.near,It=$.far;x.texture!==null&&(x.depthNear>0&&(ct=x.depthNear),x.depthFar>0&&(It=x.depthFar)),M.near=U.near=I.near=ct,M.far=U.far=I.far=It,(C!==M.near||W!==M.far)&&(s.updateRenderState({depthNear:M.near,depthFar:M.far}),C=M.near,W=M.far),I.layers.mask=$.layers.mask|2,U.layers.mask=$.layers.mask|4,M.layers.mask=I.layers.mask|U.layers.mask;let ut=$.parent,Dt=M.cameras;ht(M,ut);for(let Ht=0;Ht<Dt.length;Ht++)ht(Dt[Ht],ut);Dt.length===2?K(M,I,U):M.projectionMatrix.copy(I.projectionMatrix),ot($,M,ut)};function ot($,ct,It){It===null?$.matrix.copy(ct.matrixWorld):($.matrix.copy(It.matrixWorld),$.matrix.invert(),$.matrix.multiply(ct.matrixWorld)),$.matrix.decompose($.position,$.quaternion,$.scale),$.updateMatrixWorld(!0),$.projectionMatrix.copy(ct.projectionMatrix),$.projectionMatrixInverse.copy(ct.projectionMatrixInverse),$.isPerspectiveCamera&&($.fov=oo*2*Math.atan(1/$.projectionMatrix.elements[5]),$.zoom=1)}this.getCamera=function(){return M},this.getFoveation=function(){if(!(h===null&&p===null))return l},this.setFoveation=function($){l=$,h!==null&&(h.fixedFoveation=$),p!==null&&p.fixedFoveation!==void 0&&(p.fixedFoveation=$)},this.hasDepthSensing=function(){return x.texture!==null},this.getDepthSensingMesh=function(){return x.getMesh(M)};let mt=null;function dt($,ct){if(u=ct.getViewerPose(c||o),_=ct,u!==null){let It=u.views;p!==null&&(t.setRenderTargetFramebuffer(A,p.framebuffer),t.setRenderTarget(A));let ut=!1;It.length!==M.cameras.length&&(M.cameras.length=0,ut=!0);for(let Ht=0;Ht<It.length;Ht++){let zt=It[Ht],se=null;if(p!==null)se=p.getViewport(zt);else{let Se=f.getViewSubImage(h,zt);se=Se.viewport,Ht===0&&(t.setRenderTargetTextures(A,Se.colorTexture,h.ignoreDepthValues?void 0:Se.depthStencilTexture),t.setRenderTarget(A))}let jt=E[Ht];jt===void 0&&(jt=new In,jt.layers.enable(Ht),jt.viewport=new Fe,E[Ht]=jt),jt.matrix.fromArray(zt.transform.matrix),jt.matrix.decompose(jt.position,jt.quaternion,jt.scale),jt.projectionMatrix.fromArray(zt.projectionMatrix),jt.projectionMatrixInverse.copy(jt.projectionMatrix).invert(),jt.viewport.set(se.x,se.y,se.width,se.height),Ht===0&&(M.matrix.copy(jt.matrix),M.matrix.decompose(M.position,M.quaternion,M.scale)),ut===!0&&M.cameras.push(jt)}let Dt=s.enabledFeatures;if(Dt&&Dt.includes("depth-sensing")){let Ht=f.getDepthInformation(It[0]);Ht&&Ht.isValid&&Ht.texture&&x.init(t,Ht,s.renderState)}}for(let It=0;It<w.length;It++){let ut=b[It],Dt=w[It];ut!==null&&Dt!==void 0&&Dt.update(ut,ct,c||o)}mt&&mt($,ct),ct.detectedPlanes&&n.dispatchEvent({type:"planesdetected",data:ct}),_=null}let Gt=new Zf;Gt.setAnimationLoop(dt),this.setAnimationLoop=function($){mt=$},this.dispose=function(){}}},xs=new Bi,lv=new We;function cv(i,t){function e(m,d){m.matrixAutoUpdate===!0&&m.updateMatrix(),d.value.copy(m.matrix)}function n(m,d){d.color.getRGB(m.fogColor.value,$f(i)),d.isFog?(m.fogNear.value=d.near,m.fogFar.value=d.far):d.isFogExp2&&(m.fogDensity.value=d.density)}function s(m,d,A,w,b){d.isMeshBasicMaterial||d.isMeshLambertMaterial?r(m,d):d.isMeshToonMaterial?(r(m,d),f(m,d)):d.isMeshPhongMaterial?(r(m,d),u(m,d)):d.isMeshStandardMaterial?(r(m,d),h(m,d),d.isMeshPhysicalMaterial&&p(m,d,b)):d.isMeshMatcapMaterial?(r(m,d),_(m,d)):d.isMeshDepthMaterial?r(m,d):d.isMeshDistanceMaterial?(r(m,d),x(m,d)):d.isMeshNormalMaterial?r(m,d):d.isLineBasicMaterial?(o(m,d),d.isLineDashedMaterial&&a(m,d)):d.isPointsMaterial?l(m,d,A,w):d.isSpriteMaterial?c(m,d):d.isShadowMaterial?(m.color.value.copy(d.color),m.opacity.value=d.opacity):d.isShaderMaterial&&(d.uniformsNeedUpdate=!1)}function r(m,d){m.opacity.value=d.opacity,d.color&&m.diffuse.value.copy(d.color),d.emissive&&m.emissive.value.copy(d.emissive).multiplyScalar(d.emissiveIntensity),d.map&&(m.map.value=d.map,e(d.map,m.mapTransform)),d.alphaMap&&(m.alphaMap.value=d.alphaMap,e(d.alphaMap,m.alphaMapTransform)),d.bumpMap&&(m.bumpMap.value=d.bumpMap,e(d.bumpMap,m.bumpMapTransform),m.bumpScale.value=d.bumpScale,d.side===wn&&(m.bumpScale.value*=-1)),d.normalMap&&(m.normalMap.value=d.normalMap,e(d.normalMap,m.normalMapTransform),m.normalScale.value.copy(d.normalScale),d.side===wn&&m.normalScale.value.negate()),d.displacementMap&&(m.displacementMap.value=d.displacementMap,e(d.displacementMap,m.displacementMapTransform),m.displacementScale.value=d.displacementScale,m.displacementBias.value=d.displacementBias),d.emissiveMap&&(m.emissiveMap.value=d.emissiveMap,e(d.emissiveMap,m.emissiveMapTransform)),d.specularMap&&(m.specularMap.value=d.specularMap,e(d.specularMap,m.specularMapTransform)),d.alphaTest>0&&(m.alphaTest.value=d.alphaTest);let A=t.get(d),w=A.envMap,b=A.envMapRotation;w&&(m.envMap.value=w,xs.copy(b),xs.x*=-1,xs.y*=-1,xs.z*=-1,w.isCubeTexture&&w.isRenderTargetTexture===!1&&(xs.y*=-1,xs.z*=-1),m.envMapRotation.value.setFromMatrix4(lv.makeRotationFromEuler(xs)),m.flipEnvMap.value=w.isCubeTexture&&w.isRenderTargetTexture===!1?-1:1,m.reflectivity.value=d.reflectivity,m.ior.value=d.ior,m.refractionRatio.value=d.refractionRatio),d.lightMap&&(m.lightMap.value=d.lightMap,m.lightMapIntensity.value=d.lightMapIntensity,e(d.lightMap,m.lightMapTransform)),d.aoMap&&(m.aoMap.value=d.aoMap,m.aoMapIntensity.value=d.aoMapIntensity,e(d.aoMap,m.aoMapTransform))}function o(m,d){m.diffuse.value.copy(d.color),m.opacity.value=d.opacity,d.map&&(m.map.value=d.map,e(d.map,m.mapTransform))}function a(m,d){m.dashSize.value=d.dashSize,m.totalSize.value=d.dashSize+d.gapSize,m.scale.value=d.scale}function l(m,d,A,w){m.diffuse.value.copy(d.color),m.opacity.value=d.opacity,m.size.value=d.size*A,m.scale.value=w*.5,d.map&&(m.map.value=d.map,e(d.map,m.uvTransform)),d.alphaMap&&(m.alphaMap.value=d.alphaMap,e(d.alphaMap,m.alphaMapTransform)),d.alphaTest>0&&(m.alphaTest.value=d.alphaTest)}function c(m,d){m.diffuse.value.copy(d.color),m.opacity.value=d.opacity,m.rotation.value=d.rotation,d.map&&(m.map.value=d.map,e(d.map,m.mapTransform)),d.alphaMap&&(m.alphaMap.value=d.alphaMap,e(d.alphaMap,m.alphaMapTransform)),d.alphaTest>0&&(m.alphaTest.value=d.alphaTest)}function u(m,d){m.specular.value.copy(d.specular),m.shininess.value=Math.max(d.shininess,1e-4)}function f(m,d){d.gradientMap&&(m.gradientMap.value=d.gradientMap)}function h(m,d){m.metalness.value=d.metalness,d.metalnessMap&&(m.metalnessMap.value=d.metalnessMap,e(d.metalnessMap,m.metalnessMapTransform)),m.roughness.value=d.roughness,d.roughnessMap&&(m.roughnessMap.value=d.roughnessMap,e(d.roughnessMap,m.roughnessMapTransform)),d.envMap&&(m.envMapIntensity.value=d.envMapIntensity)}function p(m,d,A){m.ior.value=d.ior,d.sheen>0&&(m.sheenColor.value.copy(d.sheenColor).multiplyScalar(d.sheen),m.sheenRoughness.value=d.sheenRoughness,d.sheenColorMap&&(m.sheenColorMap.value=d.sheenColorMap,e(d.sheenColorMap,m.sheenColorMapTransform)),d.sheenRoughnessMap&&(m.sheenRoughnessMap.value=d.sheenRoughnessMap,e(d.sheenRoughnessMap,m.sheenRoughnessMapTransform))),d.clearcoat>0&&(m.clearcoat.value=d.clearcoat,m.clearcoatRoughness.value=d.clearcoatRoughness,d.clearcoatMap&&(m.clearcoatMap.value=d.clearcoatMap,e(d.clearcoatMap,m.clearcoatMapTransform)),d.clearcoatRoughnessMap&&(m.clearcoatRoughnessMap.value=d.clearcoatRoughnessMap,e(d.clearcoatRoughnessMap,m.clearcoatRoughnessMapTransform)),d.clearcoatNormalMap&&(m.clearcoatNormalMap.value=d.clearcoatNormalMap,e(d.clearcoatNormalMap,m.clearcoatNormalMapTransform),m.clearcoatNormalScale.value.copy(d.clearcoatNormalScale),d.side===wn&&m.clearcoatNormalScale.value.negate())),d.dispersion>0&&(m.dispersion.value=d.dispersion),d.iridescence>0&&(m.iridescence.value=d.iridescence,m.iridescenceIOR.value=d.iridescenceIOR,m.iridescenceThicknessMinimum.value=d.iridescenceThicknessRange[0],m.iridescenceThicknessMaximum.value=d.iridescenceThicknessRange[1],d.iridescenceMap&&(m.iridescenceMap.value=d.iridescenceMap,e(d.iridescenceMap,m.iridescenceMapTransform)),d.iridescenceThicknessMap&&(m.iridescenceThicknessMap.value=d.iridescenceThicknessMap,e(d.iridescenceThicknessMap,m.iridescenceThicknessMapTransform))),d.transmission>0&&(m.transmission.value=d.transmission,m.transmissionSamplerMap.value=A.texture,m.transmissionSamplerSize.value.set(A.width,A.height),d.transmissionMap&&(m.transmissionMap.value=d.transmissionMap,e(d.transmissionMap,m.transmissionMapTransform)),m.thickness.value=d.thickness,d.thicknessMap&&(m.thicknessMap.value=d.thicknessMap,e(d.thicknessMap,m.thicknessMapTransform)),m.attenuationDistance.value=d.attenuationDistance,m.attenuationColor.value.copy(d.attenuationColor)),d.anisotropy>0&&(m.anisotropyVector.value.set(d.anisotropy*Math.cos(d.anisotropyRotation),d.anisotropy*Math.sin(d.anisotropyRotation)),d.anisotropyMap&&(m.anisotropyMap.value=d.anisotropyMap,e(d.anisotropyMap,m.anisotropyMapTransform))),m.specularIntensity.value=d.specularIntensity,m.specularColor.value.copy(d.specularColor),d.specularColorMap&&(m.specularColorMap.value=d.specularColorMap,e(d.specularColorMap,m.specularColorMapTransform)),d.specularIntensityMap&&(m.specularIntensityMap.value=d.specularIntensityMap,e(d.specularIntensityMap,m.specularIntensityMapTransform))}function _(m,d){d.matcap&&(m.matcap.value=d.matcap)}function x(m,d){let A=t.get(d).light;m.referencePosition.value.setFromMatrixPosition(A.matrixWorld),m.nearDistance.value=A.shadow.camera.near,m.farDistance.value=A.shadow.camera.far}return{refreshFogUniforms:n,refreshMaterialUniforms:s}}function hv(i,t,e,n){let s={},r={},o=[],a=i.getParameter(i.MAX_UNIFORM_BUFFER_BINDINGS);function l(A,w){let b=w.program;n.uniformBlockBinding(A,b)}function c(A,w){let b=s[A.id];b===void 0&&(_(A),b=u(A),s[A.id]=b,A.addEventListener("dispose",m));let D=w.program;n.updateUBOMapping(A,D);let L=t.render.frame;r[A.id]!==L&&(h(A),r[A.id]=L)}function u(A){let w=f();A.__bindingPointIndex=w;let b=i.createBuffer(),D=A.__size,L=A.usage;return i.bindBuffer(i.UNIFORM_BUFFER,b),i.bufferData(i.UNIFORM_BUFFER,D,L),i.bindBuffer(i.UNIFORM_BUFFER,null),i.bindBufferBase(i.UNIFORM_BUFFER,w,b),b}function f(){for(let A=0;A<a;A++)if(o.indexOf(A)===-1)return o.push(A),A;return console.error("THREE.WebGLRenderer: Maximum number of simultaneously usable uniforms groups reached."),0}function h(A){let w=s[A.id],b=A.uniforms,D=A.__cache;i.bindBuffer(i.UNIFORM_BUFFER,w);for(let L=0,I=b.length;L<I;L++){let U=Array.isArray(b[L])?b[L]:[b[L]];for(let E=0,M=U.length;E<M;E++){let C=U[E];if(p(C,L,E,D)===!0){let W=C.__offset,V=Array.isArray(C.value)?C.value:[C.value],Y=0;for(let j=0;j<V.length;j++){let Z=V[j],et=x(Z);typeof Z=="number"||typeof Z=="boolean"?(C.__data[0]=Z,i.bufferSubData(i.UNIFORM_BUFFER,W+Y,C.__data)):Z.isMatrix3?(C.__data[0]=Z.elements[0],C.__data[1]=Z.elements[1],C.__data[2]=Z.elements[2],C.__data[3]=0,C.__data[4]=Z.elements[3],C.__data[5]=Z.elements[4],C.__data[6]=Z.elements[5],C.__data[7]=0,C.__data[8]=Z.elements[6],C.__data[9]=Z.elements[7],C.__data[10]=Z.elements[8],C.__data[11]=0):(Z.toArray(C.__data,Y),Y+=et.storage/Float32Array.BYTES_PER_ELEMENT)}i.bufferSubData(i.UNIFORM_BUFFER,W,C.__data)}}}i.bindBuffer(i.UNIFORM_BUFFER,null)}function p(A,w,b,D){let L=A.value,I=w+"_"+b;if(D[I]===void 0)return typeof L=="number"||typeof L=="boolean"?D[I]=L:D[I]=L.clone(),!0;{let U=D[I];if(typeof L=="number"||typeof L=="boolean"){if(U!==L)return D[I]=L,!0}else if(U.equals(L)===!1)return U.copy(L),!0}return!1}function _(A){let w=A.uniforms,b=0,D=16;for(let I=0,U=w.length;I<U;I++){let E=Array.isArray(w[I])?w[I]:[w[I]];for(let M=0,C=E.length;M<C;M++){let W=E[M],V=Array.isArray(W.value)?W.value:[W.value];for(let Y=0,j=V.length;Y<j;Y++){let Z=V[Y],et=x(Z),K=b%D,ht=K%et.boundary,ot=K+ht;b+=ht,ot!==0&&D-ot<et.storage&&(b+=D-ot),W.__data=new Float32Array(et.storage/Float32Array.BYTES_PER_ELEMENT),W.__offset=b,b+=et.storage}}}let L=b%D;return L>0&&(b+=D-L),A.__size=b,A.__cache={},this}function x(A){let w={boundary:0,storage:0};return typeof A=="number"||typeof A=="boolean"?(w.boundary=4,w.storage=4):A.isVector2?(w.boundary=8,w.storage=8):A.isVector3||A.isColor?(w.boundary=16,w.storage=12):A.isVector4?(w.boundary=16,w.storage=16):A.isMatrix3?(w.boundary=48,w.storage=48):A.isMatrix4?(w.boundary=64,w.storage=64):A.isTexture?console.warn("THREE.WebGLRenderer: Texture samplers can not be part of an uniforms group."):console.warn("THREE.WebGLRenderer: Unsupported uniform value type.",A),w}function m(A){let w=A.target;w.removeEventListener("dispose",m);let b=o.indexOf(w.__bindingPointIndex);o.splice(b,1),i.deleteBuffer(s[w.id]),delete s[w.id],delete r[w.id]}function d(){for(let A in s)i.deleteBuffer(s[A]);o=[],s={},r={}}return{bind:l,update:c,dispose:d}}var ya=class{constructor(t={}){let{canvas:e=pg(),context:n=null,depth:s=!0,stencil:r=!1,alpha:o=!1,antialias:a=!1,premultipliedAlpha:l=!0,preserveDrawingBuffer:c=!1,powerPreference:u="default",failIfMajorPerformanceCaveat:f=!1,reverseDepthBuffer:h=!1}=t;this.isWebGLRenderer=!0;let p;if(n!==null){if(typeof WebGLRenderingContext<"u"&&n instanceof WebGLRenderingContext)throw new Error("THREE.WebGLRenderer: WebGL 1 is not supported since r163.");p=n.getContextAttributes().alpha}else p=o;let _=new Uint32Array(4),x=new Int32Array(4),m=null,d=null,A=[],w=[];this.domElement=e,this.debug={checkShaderErrors:!0,onShaderError:null},this.autoClear=!0,this.autoClearColor=!0,this.autoClearDepth=!0,this.autoClearStencil=!0,this.sortObjects=!0,this.clippingPlanes=[],this.localClippingEnabled=!1,this._outputColorSpace=Wn,this.toneMapping=ns,this.toneMappingExposure=1;let b=this,D=!1,L=0,I=0,U=null,E=-1,M=null,C=new Fe,W=new Fe,V=null,Y=new ge(0),j=0,Z=e.width,et=e.height,K=1,ht=null,ot=null,mt=new Fe(0,0,Z,et),dt=new Fe(0,0,Z,et),Gt=!1,$=new ma,ct=!1,It=!1,ut=new We,Dt=new We,Ht=new H,zt=new Fe,se={background:null,fog:null,environment:null,overrideMaterial:null,isScene:!0},jt=!1;function Se(){return U===null?K:1}let z=n;function qe(S,O){return e.getContext(S,O)}try{let S={alpha:!0,depth:s,stencil:r,antialias:a,premultipliedAlpha:l,preserveDrawingBuffer:c,powerPreference:u,failIfMajorPerformanceCaveat:f};if("setAttribute"in e&&e.setAttribute("data-engine",`three.js r${sh}`),e.addEventListener("webglcontextlost",st,!1),e.addEventListener("webglcontextrestored",wt,!1),e.addEventListener("webglcontextcreationerror",bt,!1),z===null){let O="webgl2";if(z=qe(O,S),z===null)throw qe(O)?new Error("Error creating WebGL context with your selected attributes."):new Error("Error creating WebGL context.")}}catch(S){throw console.error("THREE.WebGLRenderer: "+S.message),S}let ee,Zt,Ut,xe,Ft,T,y,B,nt,J,tt,Pt,gt,vt,Xt,at,_t,Bt,Vt,St,Qt,Yt,me,N;function xt(){ee=new Tx(z),ee.init(),Yt=new sv(z,ee),Zt=new vx(z,ee,t,Yt),Ut=new ev(z,ee),Zt.reverseDepthBuffer&&h&&Ut.buffers.depth.setReversed(!0),xe=new Rx(z),Ft=new Hy,T=new iv(z,ee,Ut,Ft,Zt,Yt,xe),y=new Sx(b),B=new Ex(b),nt=new Og(z),me=new xx(z,nt),J=new Ax(z,nt,xe,me),tt=new Ix(z,J,nt,xe),Vt=new Px(z,Zt,T),at=new Mx(Ft),Pt=new Vy(b,y,B,ee,Zt,me,at),gt=new cv(b,Ft),vt=new Wy,Xt=new Jy(ee),Bt=new _x(b,y,B,Ut,tt,p,l),_t=new Qy(b,tt,Zt),N=new hv(z,xe,Zt,Ut),St=new yx(z,ee,xe),Qt=new Cx(z,ee,xe),xe.programs=Pt.programs,b.capabilities=Zt,b.extensions=ee,b.properties=Ft,b.renderLists=vt,b.shadowMap=_t,b.state=Ut,b.info=xe}xt();let Q=new Xc(b,z);this.xr=Q,this.getContext=function(){return z},this.getContextAttributes=function(){return z.getContextAttributes()},this.forceContextLoss=function(){let S=ee.get("WEBGL_lose_context");S&&S.loseContext()},this.forceContextRestore=function(){let S=ee.get("WEBGL_lose_context");S&&S.restoreContext()},this.getPixelRatio=function(){return K},this.setPixelRatio=function(S){S!==void 0&&(K=S,this.setSize(Z,et,!1))},this.getSize=function(S){return S.set(Z,et)},this.setSize=function(S,O,G=!0){if(Q.isPresenting){console.warn("THREE.WebGLRenderer: Can't change size while VR device is presenting.");return}Z=S,et=O,e.width=Math.floor(S*K),e.height=Math.floor(O*K),G===!0&&(e.style.width=S+"px",e.style.height=O+"px"),this.setViewport(0,0,S,O)},this.getDrawingBufferSize=function(S){return S.set(Z*K,et*K).floor()},this.setDrawingBufferSize=function(S,O,G){Z=S,et=O,K=G,e.width=Math.floor(S*G),e.height=Math.floor(O*G),this.setViewport(0,0,S,O)},this.getCurrentViewport=function(S){return S.copy(C)},this.getViewport=function(S){return S.copy(mt)},this.setViewport=function(S,O,G,q){S.isVector4?mt.set(S.x,S.y,S.z,S.w):mt.set(S,O,G,q),Ut.viewport(C.copy(mt).multiplyScalar(K).round())},this.getScissor=function(S){return S.copy(dt)},this.setScissor=function(S,O,G,q){S.isVector4?dt.set(S.x,S.y,S.z,S.w):dt.set(S,O,G,q),Ut.scissor(W.copy(dt).multiplyScalar(K).round())},this.getScissorTest=function(){return Gt},this.setScissorTest=function(S){Ut.setScissorTest(Gt=S)},this.setOpaqueSort=function(S){ht=S},this.setTransparentSort=function(S){ot=S},this.getClearColor=function(S){return S.copy(Bt.getClearColor())},this.setClearColor=function(){Bt.setClearColor.apply(Bt,arguments)},this.getClearAlpha=function(){return Bt.getClearAlpha()},this.setClearAlpha=function(){Bt.setClearAlpha.apply(Bt,arguments)},this.clear=function(S=!0,O=!0,G=!0){let q=0;if(S){let k=!1;if(U!==null){let ft=U.texture.format;k=ft===hh||ft===ch||ft===lh}if(k){let ft=U.texture.type,Mt=ft===Ni||ft===Es||ft===ro||ft===Mr||ft===oh||ft===ah,Nt=Bt.getClearColor(),Lt=Bt.getClearAlpha(),Wt=Nt.r,qt=Nt.g,Ot=Nt.b;Mt?(_[0]=Wt,_[1]=qt,_[2]=Ot,_[3]=Lt,z.clearBufferuiv(z.COLOR,0,_)):(x[0]=Wt,x[1]=qt,x[2]=Ot,x[3]=Lt,z.clearBufferiv(z.COLOR,0,x))}else q|=z.COLOR_BUFFER_BIT}O&&(q|=z.DEPTH_BUFFER_BIT),G&&(q|=z.STENCIL_BUFFER_BIT,this.state.buffers.stencil.setMask(4294967295)),z.clear(q)},this.clearColor=function(){this.clear(!0,!1,!1)},this.clearDepth=function(){this.clear(!1,!0,!1)},this.clearStencil=function(){this.clear(!1,!1,!0)},this.dispose=function(){e.removeEventListener("webglcontextlost",st,!1),e.removeEventListener("webglcontextrestored",wt,!1),e.removeEventListener("webglcontextcreationerror",bt,!1),vt.dispose(),Xt.dispose(),Ft.dispose(),y.dispose(),B.dispose(),tt.dispose(),me.dispose(),N.dispose(),Pt.dispose(),Q.dispose(),Q.removeEventListener("sessionstart",yi),Q.removeEventListener("sessionend",vi),ze.stop()};function st(S){S.preventDefault(),console.log("THREE.WebGLRenderer: Context Lost."),D=!0}function wt(){console.log("THREE.WebGLRenderer: Context Restored."),D=!1;let S=xe.autoReset,O=_t.enabled,G=_t.autoUpdate,q=_t.needsUpdate,k=_t.type;xt(),xe.autoReset=S,_t.enabled=O,_t.autoUpdate=G,_t.needsUpdate=q,_t.type=k}function bt(S){console.error("THREE.WebGLRenderer: A WebGL context could not be created. Reason: ",S.statusMessage)}function Jt(S){let O=S.target;O.removeEventListener("dispose",Jt),Ue(O)}function Ue(S){At(S),Ft.remove(S)}function At(S){let O=Ft.get(S).programs;O!==void 0&&(O.forEach(function(G){Pt.releaseProgram(G)}),S.isShaderMaterial&&Pt.releaseShaderCache(S))}this.renderBufferDirect=function(S,O,G,q,k,ft){O===null&&(O=se);let Mt=k.isMesh&&k.matrixWorld.determinant()<0,Nt=ls(S,O,G,q,k);Ut.setMaterial(q,Mt);let Lt=G.index,Wt=1;if(q.wireframe===!0){if(Lt=J.getWireframeAttribute(G),Lt===void 0)return;Wt=2}let qt=G.drawRange,Ot=G.attributes.position,ae=qt.start*Wt,ye=(qt.start+qt.count)*Wt;ft!==null&&(ae=Math.max(ae,ft.start*Wt),ye=Math.min(ye,(ft.start+ft.count)*Wt)),Lt!==null?(ae=Math.max(ae,0),ye=Math.min(ye,Lt.count)):Ot!=null&&(ae=Math.max(ae,0),ye=Math.min(ye,Ot.count));let Me=ye-ae;if(Me<0||Me===1/0)return;me.setup(k,q,Nt,G,Lt);let en,ue=St;if(Lt!==null&&(en=nt.get(Lt),ue=Qt,ue.setIndex(en)),k.isMesh)q.wireframe===!0?(Ut.setLineWidth(q.wireframeLinewidth*Se()),ue.setMode(z.LINES)):ue.setMode(z.TRIANGLES);else if(k.isLine){let Ct=q.linewidth;Ct===void 0&&(Ct=1),Ut.setLineWidth(Ct*Se()),k.isLineSegments?ue.setMode(z.LINES):k.isLineLoop?ue.setMode(z.LINE_LOOP):ue.setMode(z.LINE_STRIP)}else k.isPoints?ue.setMode(z.POINTS):k.isSprite&&ue.setMode(z.TRIANGLES);if(k.isBatchedMesh)if(k._multiDrawInstances!==null)ue.renderMultiDrawInstances(k._multiDrawStarts,k._multiDrawCounts,k._multiDrawCount,k._multiDrawInstances);else if(ee.get("WEBGL_multi_draw"))ue.renderMultiDraw(k._multiDrawStarts,k._multiDrawCounts,k._multiDrawCount);else{let Ct=k._multiDrawStarts,kn=k._multiDrawCounts,fe=k._multiDrawCount,pn=Lt?nt.get(Lt).bytesPerElement:1,Si=Ft.get(q).currentProgram.getUniforms();for(let mn=0;mn<fe;mn++)Si.setValue(z,"_gl_DrawID",mn),ue.render(Ct[mn]/pn,kn[mn])}else if(k.isInstancedMesh)ue.renderInstances(ae,Me,k.count);else if(G.isInstancedBufferGeometry){let Ct=G._maxInstanceCount!==void 0?G._maxInstanceCount:1/0,kn=Math.min(G.instanceCount,Ct);ue.renderInstances(ae,Me,kn)}else ue.render(ae,Me)};function re(S,O,G){S.transparent===!0&&S.side===ii&&S.forceSinglePass===!1?(S.side=wn,S.needsUpdate=!0,ks(S,O,G),S.side=is,S.needsUpdate=!0,ks(S,O,G),S.side=ii):ks(S,O,G)}this.compile=function(S,O,G=null){G===null&&(G=S),d=Xt.get(G),d.init(O),w.push(d),G.traverseVisible(function(k){k.isLight&&k.layers.test(O.layers)&&(d.pushLight(k),k.castShadow&&d.pushShadow(k))}),S!==G&&S.traverseVisible(function(k){k.isLight&&k.layers.test(O.layers)&&(d.pushLight(k),k.castShadow&&d.pushShadow(k))}),d.setupLights();let q=new Set;return S.traverse(function(k){if(!(k.isMesh||k.isPoints||k.isLine||k.isSprite))return;let ft=k.material;if(ft)if(Array.isArray(ft))for(let Mt=0;Mt<ft.length;Mt++){let Nt=ft[Mt];re(Nt,G,k),q.add(Nt)}else re(ft,G,k),q.add(ft)}),w.pop(),d=null,q},this.compileAsync=function(S,O,G=null){let q=this.compile(S,O,G);return new Promise(k=>{function ft(){if(q.forEach(function(Mt){Ft.get(Mt).currentProgram.isReady()&&q.delete(Mt)}),q.size===0){k(S);return}setTimeout(ft,10)}ee.get("KHR_parallel_shader_compile")!==null?ft():setTimeout(ft,10)})};let be=null;function tn(S){be&&be(S)}function yi(){ze.stop()}function vi(){ze.start()}let ze=new Zf;ze.setAnimationLoop(tn),typeof self<"u"&&ze.setContext(self),this.setAnimationLoop=function(S){be=S,Q.setAnimationLoop(S),S===null?ze.stop():ze.start()},Q.addEventListener("sessionstart",yi),Q.addEventListener("sessionend",vi),this.render=function(S,O){if(O!==void 0&&O.isCamera!==!0){console.error("THREE.WebGLRenderer.render: camera is not an instance of THREE.Camera.");return}if(D===!0)return;if(S.matrixWorldAutoUpdate===!0&&S.updateMatrixWorld(),O.parent===null&&O.matrixWorldAutoUpdate===!0&&O.updateMatrixWorld(),Q.enabled===!0&&Q.isPresenting===!0&&(Q.cameraAutoUpdate===!0&&Q.updateCamera(O),O=Q.getCamera()),S.isScene===!0&&S.onBeforeRender(b,S,O,U),d=Xt.get(S,w.length),d.init(O),w.push(d),Dt.multiplyMatrices(O.projectionMatrix,O.matrixWorldInverse),$.setFromProjectionMatrix(Dt),It=this.localClippingEnabled,ct=at.init(this.clippingPlanes,It),m=vt.get(S,A.length),m.init(),A.push(m),Q.enabled===!0&&Q.isPresenting===!0){let ft=b.xr.getDepthSensingMesh();ft!==null&&ui(ft,O,-1/0,b.sortObjects)}ui(S,O,0,b.sortObjects),m.finish(),b.sortObjects===!0&&m.sort(ht,ot),jt=Q.enabled===!1||Q.isPresenting===!1||Q.hasDepthSensing()===!1,jt&&Bt.addToRenderList(m,S),this.info.render.frame++,ct===!0&&at.beginShadows();let G=d.state.shadowsArray;_t.render(G,S,O),ct===!0&&at.endShadows(),this.info.autoReset===!0&&this.info.reset();let q=m.opaque,k=m.transmissive;if(d.setupLights(),O.isArrayCamera){let ft=O.cameras;if(k.length>0)for(let Mt=0,Nt=ft.length;Mt<Nt;Mt++){let Lt=ft[Mt];Vr(q,k,S,Lt)}jt&&Bt.render(S);for(let Mt=0,Nt=ft.length;Mt<Nt;Mt++){let Lt=ft[Mt];Mi(m,S,Lt,Lt.viewport)}}else k.length>0&&Vr(q,k,S,O),jt&&Bt.render(S),Mi(m,S,O);U!==null&&(T.updateMultisampleRenderTarget(U),T.updateRenderTargetMipmap(U)),S.isScene===!0&&S.onAfterRender(b,S,O),me.resetDefaultState(),E=-1,M=null,w.pop(),w.length>0?(d=w[w.length-1],ct===!0&&at.setGlobalState(b.clippingPlanes,d.state.camera)):d=null,A.pop(),A.length>0?m=A[A.length-1]:m=null};function ui(S,O,G,q){if(S.visible===!1)return;if(S.layers.test(O.layers)){if(S.isGroup)G=S.renderOrder;else if(S.isLOD)S.autoUpdate===!0&&S.update(O);else if(S.isLight)d.pushLight(S),S.castShadow&&d.pushShadow(S);else if(S.isSprite){if(!S.frustumCulled||$.intersectsSprite(S)){q&&zt.setFromMatrixPosition(S.matrixWorld).applyMatrix4(Dt);let Mt=tt.update(S),Nt=S.material;Nt.visible&&m.push(S,Mt,Nt,G,zt.z,null)}}else if((S.isMesh||S.isLine||S.isPoints)&&(!S.frustumCulled||$.intersectsObject(S))){let Mt=tt.update(S),Nt=S.material;if(q&&(S.boundingSphere!==void 0?(S.boundingSphere===null&&S.computeBoundingSphere(),zt.copy(S.boundingSphere.center)):(Mt.boundingSphere===null&&Mt.computeBoundingSphere(),zt.copy(Mt.boundingSphere.center)),zt.applyMatrix4(S.matrixWorld).applyMatrix4(Dt)),Array.isArray(Nt)){let Lt=Mt.groups;for(let Wt=0,qt=Lt.length;Wt<qt;Wt++){let Ot=Lt[Wt],ae=Nt[Ot.materialIndex];ae&&ae.visible&&m.push(S,Mt,ae,G,zt.z,Ot)}}else Nt.visible&&m.push(S,Mt,Nt,G,zt.z,null)}}let ft=S.children;for(let Mt=0,Nt=ft.length;Mt<Nt;Mt++)ui(ft[Mt],O,G,q)}function Mi(S,O,G,q){let k=S.opaque,ft=S.transmissive,Mt=S.transparent;d.setupLightsView(G),ct===!0&&at.setGlobalState(b.clippingPlanes,G),q&&Ut.viewport(C.copy(q)),k.length>0&&as(k,O,G),ft.length>0&&as(ft,O,G),Mt.length>0&&as(Mt,O,G),Ut.buffers.depth.setTest(!0),Ut.buffers.depth.setMask(!0),Ut.buffers.color.setMask(!0),Ut.setPolygonOffset(!1)}function Vr(S,O,G,q){if((G.isScene===!0?G.overrideMaterial:null)!==null)return;d.state.transmissionRenderTarget[q.id]===void 0&&(d.state.transmissionRenderTarget[q.id]=new Fi(1,1,{generateMipmaps:!0,type:ee.has("EXT_color_buffer_half_float")||ee.has("EXT_color_buffer_float")?ho:Ni,minFilter:ws,samples:4,stencilBuffer:r,resolveDepthBuffer:!1,resolveStencilBuffer:!1,colorSpace:de.workingColorSpace}));let ft=d.state.transmissionRenderTarget[q.id],Mt=q.viewport||C;ft.setSize(Mt.z,Mt.w);let Nt=b.getRenderTarget();b.setRenderTarget(ft),b.getClearColor(Y),j=b.getClearAlpha(),j<1&&b.setClearColor(16777215,.5),b.clear(),jt&&Bt.render(G);let Lt=b.toneMapping;b.toneMapping=ns;let Wt=q.viewport;if(q.viewport!==void 0&&(q.viewport=void 0),d.setupLightsView(q),ct===!0&&at.setGlobalState(b.clippingPlanes,q),as(S,G,q),T.updateMultisampleRenderTarget(ft),T.updateRenderTargetMipmap(ft),ee.has("WEBGL_multisampled_render_to_texture")===!1){let qt=!1;for(let Ot=0,ae=O.length;Ot<ae;Ot++){let ye=O[Ot],Me=ye.object,en=ye.geometry,ue=ye.material,Ct=ye.group;if(ue.side===ii&&Me.layers.test(q.layers)){let kn=ue.side;ue.side=wn,ue.needsUpdate=!0,vo(Me,G,q,en,ue,Ct),ue.side=kn,ue.needsUpdate=!0,qt=!0}}qt===!0&&(T.updateMultisampleRenderTarget(ft),T.updateRenderTargetMipmap(ft))}b.setRenderTarget(Nt),b.setClearColor(Y,j),Wt!==void 0&&(q.viewport=Wt),b.toneMapping=Lt}function as(S,O,G){let q=O.isScene===!0?O.overrideMaterial:null;for(let k=0,ft=S.length;k<ft;k++){let Mt=S[k],Nt=Mt.object,Lt=Mt.geometry,Wt=q===null?Mt.material:q,qt=Mt.group;Nt.layers.test(G.layers)&&vo(Nt,O,G,Lt,Wt,qt)}}function vo(S,O,G,q,k,ft){S.onBeforeRender(b,O,G,q,k,ft),S.modelViewMatrix.multiplyMatrices(G.matrixWorldInverse,S.matrixWorld),S.normalMatrix.getNormalMatrix(S.modelViewMatrix),k.onBeforeRender(b,O,G,q,S,ft),k.transparent===!0&&k.side===ii&&k.forceSinglePass===!1?(k.side=wn,k.needsUpdate=!0,b.renderBufferDirect(G,O,q,k,S,ft),k.side=is,k.needsUpdate=!0,b.renderBufferDirect(G,O,q,k,S,ft),k.side=ii):b.renderBufferDirect(G,O,q,k,S,ft),S.onAfterRender(b,O,G,q,k,ft)}function ks(S,O,G){O.isScene!==!0&&(O=se);let q=Ft.get(S),k=d.state.lights,ft=d.state.shadowsArray,Mt=k.state.version,Nt=Pt.getParameters(S,k.state,ft,O,G),Lt=Pt.getProgramCacheKey(Nt),Wt=q.programs;q.environment=S.isMeshStandardMaterial?O.environment:null,q.fog=O.fog,q.envMap=(S.isMeshStandardMaterial?B:y).get(S.envMap||q.environment),q.envMapRotation=q.environment!==null&&S.envMap===null?O.environmentRotation:S.envMapRotation,Wt===void 0&&(S.addEventListener("dispose",Jt),Wt=new Map,q.programs=Wt);let qt=Wt.get(Lt);if(qt!==void 0){if(q.currentProgram===qt&&q.lightsStateVersion===Mt)return Mo(S,Nt),qt}else Nt.uniforms=Pt.getUniforms(S),S.onBeforeCompile(Nt,b),qt=Pt.acquireProgram(Nt,Lt),Wt.set(Lt,qt),q.uniforms=Nt.uniforms;let Ot=q.uniforms;return(!S.isShaderMaterial&&!S.isRawShaderMaterial||S.clipping===!0)&&(Ot.clippingPlanes=at.uniform),Mo(S,Nt),q.needsLights=di(S),q.lightsStateVersion=Mt,q.needsLights&&(Ot.ambientLightColor.value=k.state.ambient,Ot.lightProbe.value=k.state.probe,Ot.directionalLights.value=k.state.directional,Ot.directionalLightShadows.value=k.state.directionalShadow,Ot.spotLights.value=k.state.spot,Ot.spotLightShadows.value=k.state.spotShadow,Ot.rectAreaLights.value=k.state.rectArea,Ot.ltc_1.value=k.state.rectAreaLTC1,Ot.ltc_2.value=k.state.rectAreaLTC2,Ot.pointLights.value=k.state.point,Ot.pointLightShadows.value=k.state.pointShadow,Ot.hemisphereLights.value=k.state.hemi,Ot.directionalShadowMap.value=k.state.directionalShadowMap,Ot.directionalShadowMatrix.value=k.state.directionalShadowMatrix,Ot.spotShadowMap.value=k.state.spotShadowMap,Ot.spotLightMatrix.value=k.state.spotLightMatrix,Ot.spotLightMap.value=k.state.spotLightMap,Ot.pointShadowMap.value=k.state.pointShadowMap,Ot.pointShadowMatrix.value=k.state.pointShadowMatrix),q.currentProgram=qt,q.uniformsList=null,qt}function fi(S){if(S.uniformsList===null){let O=S.currentProgram.getUniforms();S.uniformsList=_r.seqWithValue(O.seq,S.uniforms)}return S.uniformsList}function Mo(S,O){let G=Ft.get(S);G.outputColorSpace=O.outputColorSpace,G.batching=O.batching,G.batchingColor=O.batchingColor,G.instancing=O.instancing,G.instancingColor=O.instancingColor,G.instancingMorph=O.instancingMorph,G.skinning=O.skinning,G.morphTargets=O.morphTargets,G.morphNormals=O.morphNormals,G.morphColors=O.morphColors,G.morphTargetsCount=O.morphTargetsCount,G.numClippingPlanes=O.numClippingPlanes,G.numIntersection=O.numClipIntersection,G.vertexAlphas=O.vertexAlphas,G.vertexTangents=O.vertexTangents,G.toneMapping=O.toneMapping}function ls(S,O,G,q,k){O.isScene!==!0&&(O=se),T.resetTextureUnits();let ft=O.fog,Mt=q.isMeshStandardMaterial?O.environment:null,Nt=U===null?b.outputColorSpace:U.isXRRenderTarget===!0?U.texture.colorSpace:ss,Lt=(q.isMeshStandardMaterial?B:y).get(q.envMap||Mt),Wt=q.vertexColors===!0&&!!G.attributes.color&&G.attributes.color.itemSize===4,qt=!!G.attributes.tangent&&(!!q.normalMap||q.anisotropy>0),Ot=!!G.morphAttributes.position,ae=!!G.morphAttributes.normal,ye=!!G.morphAttributes.color,Me=ns;q.toneMapped&&(U===null||U.isXRRenderTarget===!0)&&(Me=b.toneMapping);let en=G.morphAttributes.position||G.morphAttributes.normal||G.morphAttributes.color,ue=en!==void 0?en.length:0,Ct=Ft.get(q),kn=d.state.lights;if(ct===!0&&(It===!0||S!==M)){let Mn=S===M&&q.id===E;at.setState(q,S,Mn)}let fe=!1;q.version===Ct.__version?(Ct.needsLights&&Ct.lightsStateVersion!==kn.state.version||Ct.outputColorSpace!==Nt||k.isBatchedMesh&&Ct.batching===!1||!k.isBatchedMesh&&Ct.batching===!0||k.isBatchedMesh&&Ct.batchingColor===!0&&k.colorTexture===null||k.isBatchedMesh&&Ct.batchingColor===!1&&k.colorTexture!==null||k.isInstancedMesh&&Ct.instancing===!1||!k.isInstancedMesh&&Ct.instancing===!0||k.isSkinnedMesh&&Ct.skinning===!1||!k.isSkinnedMesh&&Ct.skinning===!0||k.isInstancedMesh&&Ct.instancingColor===!0&&k.instanceColor===null||k.isInstancedMesh&&Ct.instancingColor===!1&&k.instanceColor!==null||k.isInstancedMesh&&Ct.instancingMorph===!0&&k.morphTexture===null||k.isInstancedMesh&&Ct.instancingMorph===!1&&k.morphTexture!==null||Ct.envMap!==Lt||q.fog===!0&&Ct.fog!==ft||Ct.numClippingPlanes!==void 0&&(Ct.numClippingPlanes!==at.numPlanes||Ct.numIntersection!==at.numIntersection)||Ct.vertexAlphas!==Wt||Ct.vertexTangents!==qt||Ct.morphTargets!==Ot||Ct.morphNormals!==ae||Ct.morphColors!==ye||Ct.toneMapping!==Me||Ct.morphTargetsCount!==ue)&&(fe=!0):(fe=!0,Ct.__version=q.version);let pn=Ct.currentProgram;fe===!0&&(pn=ks(q,O,k));let Si=!1,mn=!1,cs=!1,Ae=pn.getUniforms(),Tn=Ct.uniforms;if(Ut.useProgram(pn.program)&&(Si=!0,mn=!0,cs=!0),q.id!==E&&(E=q.id,mn=!0),Si||M!==S){Ut.buffers.depth.getReversed()?(ut.copy(S.projectionMatrix),gg(ut),_g(ut),Ae.setValue(z,"projectionMatrix",ut)):Ae.setValue(z,"projectionMatrix",S.projectionMatrix),Ae.setValue(z,"viewMatrix",S.matrixWorldInverse);let Jn=Ae.map.cameraPosition;Jn!==void 0&&Jn.setValue(z,Ht.setFromMatrixPosition(S.matrixWorld)),Zt.logarithmicDepthBuffer&&Ae.setValue(z,"logDepthBufFC",2/(Math.log(S.far+1)/Math.LN2)),(q.isMeshPhongMaterial||q.isMeshToonMaterial||q.isMeshLambertMaterial||q.isMeshBasicMaterial||q.isMeshStandardMaterial||q.isShaderMaterial)&&Ae.setValue(z,"isOrthographic",S.isOrthographicCamera===!0),M!==S&&(M=S,mn=!0,cs=!0)}if(k.isSkinnedMesh){Ae.setOptional(z,k,"bindMatrix"),Ae.setOptional(z,k,"bindMatrixInverse");let Mn=k.skeleton;Mn&&(Mn.boneTexture===null&&Mn.computeBoneTexture(),Ae.setValue(z,"boneTexture",Mn.boneTexture,T))}k.isBatchedMesh&&(Ae.setOptional(z,k,"batchingTexture"),Ae.setValue(z,"batchingTexture",k._matricesTexture,T),Ae.setOptional(z,k,"batchingIdTexture"),Ae.setValue(z,"batchingIdTexture",k._indirectTexture,T),Ae.setOptional(z,k,"batchingColorTexture"),k._colorsTexture!==null&&Ae.setValue(z,"batchingColorTexture",k._colorsTexture,T));let Vi=G.morphAttributes;if((Vi.position!==void 0||Vi.normal!==void 0||Vi.color!==void 0)&&Vt.update(k,G,pn),(mn||Ct.receiveShadow!==k.receiveShadow)&&(Ct.receiveShadow=k.receiveShadow,Ae.setValue(z,"receiveShadow",k.receiveShadow)),q.isMeshGouraudMaterial&&q.envMap!==null&&(Tn.envMap.value=Lt,Tn.flipEnvMap.value=Lt.isCubeTexture&&Lt.isRenderTargetTexture===!1?-1:1),q.isMeshStandardMaterial&&q.envMap===null&&O.environment!==null&&(Tn.envMapIntensity.value=O.environmentIntensity),mn&&(Ae.setValue(z,"toneMappingExposure",b.toneMappingExposure),Ct.needsLights&&So(Tn,cs),ft&&q.fog===!0&&gt.refreshFogUniforms(Tn,ft),gt.refreshMaterialUniforms(Tn,q,K,et,d.state.transmissionRenderTarget[S.id]),_r.upload(z,fi(Ct),Tn,T)),q.isShaderMaterial&&q.uniformsNeedUpdate===!0&&(_r.upload(z,fi(Ct),Tn,T),q.uniformsNeedUpdate=!1),q.isSpriteMaterial&&Ae.setValue(z,"center",k.center),Ae.setValue(z,"modelViewMatrix",k.modelViewMatrix),Ae.setValue(z,"normalMatrix",k.normalMatrix),Ae.setValue(z,"modelMatrix",k.matrixWorld),q.isShaderMaterial||q.isRawShaderMaterial){let Mn=q.uniformsGroups;for(let Jn=0,zn=Mn.length;Jn<zn;Jn++){let hs=Mn[Jn];N.update(hs,pn),N.bind(hs,pn)}}return pn}function So(S,O){S.ambientLightColor.needsUpdate=O,S.lightProbe.needsUpdate=O,S.directionalLights.needsUpdate=O,S.directionalLightShadows.needsUpdate=O,S.pointLights.needsUpdate=O,S.pointLightShadows.needsUpdate=O,S.spotLights.needsUpdate=O,S.spotLightShadows.needsUpdate=O,S.rectAreaLights.needsUpdate=O,S.hemisphereLights.needsUpdate=O}function di(S){return S.isMeshLambertMaterial||S.isMeshToonMaterial||S.isMeshPhongMaterial||S.isMeshStandardMaterial||S.isShadowMaterial||S.isShaderMaterial&&S.lights===!0}this.getActiveCubeFace=function(){return L},this.getActiveMipmapLevel=function(){return I},this.getRenderTarget=function(){return U},this.setRenderTargetTextures=function(S,O,G){Ft.get(S.texture).__webglTexture=O,Ft.get(S.depthTexture).__webglTexture=G;let q=Ft.get(S);q.__hasExternalTextures=!0,q.__autoAllocateDepthBuffer=G===void 0,q.__autoAllocateDepthBuffer||ee.has("WEBGL_multisampled_render_to_texture")===!0&&(console.warn("THREE.WebGLRenderer: Render-to-texture extension was disabled because an external texture was provided"),q.__useRenderToTexture=!1)},this.setRenderTargetFramebuffer=function(S,O){let G=Ft.get(S);G.__webglFramebuffer=O,G.__useDefaultFramebuffer=O===void 0},this.setRenderTarget=function(S,O=0,G=0){U=S,L=O,I=G;let q=!0,k=null,ft=!1,Mt=!1;if(S){let Lt=Ft.get(S);if(Lt.__useDefaultFramebuffer!==void 0)Ut.bindFramebuffer(z.FRAMEBUFFER,null),q=!1;else if(Lt.__webglFramebuffer===void 0)T.setupRenderTarget(S);else if(Lt.__hasExternalTextures)T.rebindTextures(S,Ft.get(S.texture).__webglTexture,Ft.get(S.depthTexture).__webglTexture);else if(S.depthBuffer){let Ot=S.depthTexture;if(Lt.__boundDepthTexture!==Ot){if(Ot!==null&&Ft.has(Ot)&&(S.width!==Ot.image.width||S.height!==Ot.image.height))throw new Error("WebGLRenderTarget: Attached DepthTexture is initialized to the incorrect size.");T.setupDepthRenderbuffer(S)}}let Wt=S.texture;(Wt.isData3DTexture||Wt.isDataArrayTexture||Wt.isCompressedArrayTexture)&&(Mt=!0);let qt=Ft.get(S).__webglFramebuffer;S.isWebGLCubeRenderTarget?(Array.isArray(qt[O])?k=qt[O][G]:k=qt[O],ft=!0):S.samples>0&&T.useMultisampledRTT(S)===!1?k=Ft.get(S).__webglMultisampledFramebuffer:Array.isArray(qt)?k=qt[G]:k=qt,C.copy(S.viewport),W.copy(S.scissor),V=S.scissorTest}else C.copy(mt).multiplyScalar(K).floor(),W.copy(dt).multiplyScalar(K).floor(),V=Gt;if(Ut.bindFramebuffer(z.FRAMEBUFFER,k)&&q&&Ut.drawBuffers(S,k),Ut.viewport(C),Ut.scissor(W),Ut.setScissorTest(V),ft){let Lt=Ft.get(S.texture);z.framebufferTexture2D(z.FRAMEBUFFER,z.COLOR_ATTACHMENT0,z.TEXTURE_CUBE_MAP_POSITIVE_X+O,Lt.__webglTexture,G)}else if(Mt){let Lt=Ft.get(S.texture),Wt=O||0;z.framebufferTextureLayer(z.FRAMEBUFFER,z.COLOR_ATTACHMENT0,Lt.__webglTexture,G||0,Wt)}E=-1},this.readRenderTargetPixels=function(S,O,G,q,k,ft,Mt){if(!(S&&S.isWebGLRenderTarget)){console.error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not THREE.WebGLRenderTarget.");return}let Nt=Ft.get(S).__webglFramebuffer;if(S.isWebGLCubeRenderTarget&&Mt!==void 0&&(Nt=Nt[Mt]),Nt){Ut.bindFramebuffer(z.FRAMEBUFFER,Nt);try{let Lt=S.texture,Wt=Lt.format,qt=Lt.type;if(!Zt.textureFormatReadable(Wt)){console.error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not in RGBA or implementation defined format.");return}if(!Zt.textureTypeReadable(qt)){console.error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not in UnsignedByteType or implementation defined type.");return}O>=0&&O<=S.width-q&&G>=0&&G<=S.height-k&&z.readPixels(O,G,q,k,Yt.convert(Wt),Yt.convert(qt),ft)}finally{let Lt=U!==null?Ft.get(U).__webglFramebuffer:null;Ut.bindFramebuffer(z.FRAMEBUFFER,Lt)}}},this.readRenderTargetPixelsAsync=async function(S,O,G,q,k,ft,Mt){if(!(S&&S.isWebGLRenderTarget))throw new Error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not THREE.WebGLRenderTarget.");let Nt=Ft.get(S).__webglFramebuffer;if(S.isWebGLCubeRenderTarget&&Mt!==void 0&&(Nt=Nt[Mt]),Nt){let Lt=S.texture,Wt=Lt.format,qt=Lt.type;if(!Zt.textureFormatReadable(Wt))throw new Error("THREE.WebGLRenderer.readRenderTargetPixelsAsync: renderTarget is not in RGBA or implementation defined format.");if(!Zt.textureTypeReadable(qt))throw new Error("THREE.WebGLRenderer.readRenderTargetPixelsAsync: renderTarget is not in UnsignedByteType or implementation defined type.");if(O>=0&&O<=S.width-q&&G>=0&&G<=S.height-k){Ut.bindFramebuffer(z.FRAMEBUFFER,Nt);let Ot=z.createBuffer();z.bindBuffer(z.PIXEL_PACK_BUFFER,Ot),z.bufferData(z.PIXEL_PACK_BUFFER,ft.byteLength,z.STREAM_READ),z.readPixels(O,G,q,k,Yt.convert(Wt),Yt.convert(qt),0);let ae=U!==null?Ft.get(U).__webglFramebuffer:null;Ut.bindFramebuffer(z.FRAMEBUFFER,ae);let ye=z.fenceSync(z.SYNC_GPU_COMMANDS_COMPLETE,0);return z.flush(),await mg(z,ye,4),z.bindBuffer(z.PIXEL_PACK_BUFFER,Ot),z.getBufferSubData(z.PIXEL_PACK_BUFFER,0,ft),z.deleteBuffer(Ot),z.deleteSync(ye),ft}else throw new Error("THREE.WebGLRenderer.readRenderTargetPixelsAsync: requested read bounds are out of range.")}},this.copyFramebufferToTexture=function(S,O=null,G=0){S.isTexture!==!0&&(to("WebGLRenderer: copyFramebufferToTexture function signature has changed."),O=arguments[0]||null,S=arguments[1]);let q=Math.pow(2,-G),k=Math.floor(S.image.width*q),ft=Math.floor(S.image.height*q),Mt=O!==null?O.x:0,Nt=O!==null?O.y:0;T.setTexture2D(S,0),z.copyTexSubImage2D(z.TEXTURE_2D,G,0,0,Mt,Nt,k,ft),Ut.unbindTexture()},this.copyTextureToTexture=function(S,O,G=null,q=null,k=0){S.isTexture!==!0&&(to("WebGLRenderer: copyTextureToTexture function signature has changed."),q=arguments[0]||null,S=arguments[1],O=arguments[2],k=arguments[3]||0,G=null);let ft,Mt,Nt,Lt,Wt,qt,Ot,ae,ye,Me=S.isCompressedTexture?S.mipmaps[k]:S.image;G!==null?(ft=G.max.x-G.min.x,Mt=G.max.y-G.min.y,Nt=G.isBox3?G.max.z-G.min.z:1,Lt=G.min.x,Wt=G.min.y,qt=G.isBox3?G.min.z:0):(ft=Me.width,Mt=Me.height,Nt=Me.depth||1,Lt=0,Wt=0,qt=0),q!==null?(Ot=q.x,ae=q.y,ye=q.z):(Ot=0,ae=0,ye=0);let en=Yt.convert(O.format),ue=Yt.convert(O.type),Ct;O.isData3DTexture?(T.setTexture3D(O,0),Ct=z.TEXTURE_3D):O.isDataArrayTexture||O.isCompressedArrayTexture?(T.setTexture2DArray(O,0),Ct=z.TEXTURE_2D_ARRAY):(T.setTexture2D(O,0),Ct=z.TEXTURE_2D),z.pixelStorei(z.UNPACK_FLIP_Y_WEBGL,O.flipY),z.pixelStorei(z.UNPACK_PREMULTIPLY_ALPHA_WEBGL,O.premultiplyAlpha),z.pixelStorei(z.UNPACK_ALIGNMENT,O.unpackAlignment);let kn=z.getParameter(z.UNPACK_ROW_LENGTH),fe=z.getParameter(z.UNPACK_IMAGE_HEIGHT),pn=z.getParameter(z.UNPACK_SKIP_PIXELS),Si=z.getParameter(z.UNPACK_SKIP_ROWS),mn=z.getParameter(z.UNPACK_SKIP_IMAGES);z.pixelStorei(z.UNPACK_ROW_LENGTH,Me.width),z.pixelStorei(z.UNPACK_IMAGE_HEIGHT,Me.height),z.pixelStorei(z.UNPACK_SKIP_PIXELS,Lt),z.pixelStorei(z.UNPACK_SKIP_ROWS,Wt),z.pixelStorei(z.UNPACK_SKIP_IMAGES,qt);let cs=S.isDataArrayTexture||S.isData3DTexture,Ae=O.isDataArrayTexture||O.isData3DTexture;if(S.isRenderTargetTexture||S.isDepthTexture){let Tn=Ft.get(S),Vi=Ft.get(O),Mn=Ft.get(Tn.__renderTarget),Jn=Ft.get(Vi.__renderTarget);Ut.bindFramebuffer(z.READ_FRAMEBUFFER,Mn.__webglFramebuffer),Ut.bindFramebuffer(z.DRAW_FRAMEBUFFER,Jn.__webglFramebuffer);for(let zn=0;zn<Nt;zn++)cs&&z.framebufferTextureLayer(z.READ_FRAMEBUFFER,z.COLOR_ATTACHMENT0,Ft.get(S).__webglTexture,k,qt+zn),S.isDepthTexture?(Ae&&z.framebufferTextureLayer(z.DRAW_FRAMEBUFFER,z.COLOR_ATTACHMENT0,Ft.get(O).__webglTexture,k,ye+zn),z.blitFramebuffer(Lt,Wt,ft,Mt,Ot,ae,ft,Mt,z.DEPTH_BUFFER_BIT,z.NEAREST)):Ae?z.copyTexSubImage3D(Ct,k,Ot,ae,ye+zn,Lt,Wt,ft,Mt):z.copyTexSubImage2D(Ct,k,Ot,ae,ye+zn,Lt,Wt,ft,Mt);Ut.bindFramebuffer(z.READ_FRAMEBUFFER,null),Ut.bindFramebuffer(z.DRAW_FRAMEBUFFER,null)}else Ae?S.isDataTexture||S.isData3DTexture?z.texSubImage3D(Ct,k,Ot,ae,ye,ft,Mt,Nt,en,ue,Me.data):O.isCompressedArrayTexture?z.compressedTexSubImage3D(Ct,k,Ot,ae,ye,ft,Mt,Nt,en,Me.data):z.texSubImage3D(Ct,k,Ot,ae,ye,ft,Mt,Nt,en,ue,Me):S.isDataTexture?z.texSubImage2D(z.TEXTURE_2D,k,Ot,ae,ft,Mt,en,ue,Me.data):S.isCompressedTexture?z.compressedTexSubImage2D(z.TEXTURE_2D,k,Ot,ae,Me.width,Me.height,en,Me.data):z.texSubImage2D(z.TEXTURE_2D,k,Ot,ae,ft,Mt,en,ue,Me);z.pixelStorei(z.UNPACK_ROW_LENGTH,kn),z.pixelStorei(z.UNPACK_IMAGE_HEIGHT,fe),z.pixelStorei(z.UNPACK_SKIP_PIXELS,pn),z.pixelStorei(z.UNPACK_SKIP_ROWS,Si),z.pixelStorei(z.UNPACK_SKIP_IMAGES,mn),k===0&&O.generateMipmaps&&z.generateMipmap(Ct),Ut.unbindTexture()},this.copyTextureToTexture3D=function(S,O,G=null,q=null,k=0){return S.isTexture!==!0&&(to("WebGLRenderer: copyTextureToTexture3D function signature has changed."),G=arguments[0]||null,q=arguments[1]||null,S=arguments[2],O=arguments[3],k=arguments[4]||0),to('WebGLRenderer: copyTextureToTexture3D function has been deprecated. Use "copyTextureToTexture" instead.'),this.copyTextureToTexture(S,O,G,q,k)},this.initRenderTarget=function(S){Ft.get(S).__webglFramebuffer===void 0&&T.setupRenderTarget(S)},this.initTexture=function(S){S.isCubeTexture?T.setTextureCube(S,0):S.isData3DTexture?T.setTexture3D(S,0):S.isDataArrayTexture||S.isCompressedArrayTexture?T.setTexture2DArray(S,0):T.setTexture2D(S,0),Ut.unbindTexture()},this.resetState=function(){L=0,I=0,U=null,Ut.reset(),me.reset()},typeof __THREE_DEVTOOLS__<"u"&&__THREE_DEVTOOLS__.dispatchEvent(new CustomEvent("observe",{detail:this}))}get coordinateSystem(){return Di}get outputColorSpace(){return this._outputColorSpace}set outputColorSpace(t){this._outputColorSpace=t;let e=this.getContext();e.drawingBufferColorspace=de._getDrawingBufferColorSpace(t),e.unpackColorSpace=de._getUnpackColorSpace()}};var va=class extends Yn{constructor(){super(),this.isScene=!0,this.type="Scene",this.background=null,this.environment=null,this.fog=null,this.backgroundBlurriness=0,this.backgroundIntensity=1,this.backgroundRotation=new Bi,this.environmentIntensity=1,this.environmentRotation=new Bi,this.overrideMaterial=null,typeof __THREE_DEVTOOLS__<"u"&&__THREE_DEVTOOLS__.dispatchEvent(new CustomEvent("observe",{detail:this}))}copy(t,e){return super.copy(t,e),t.background!==null&&(this.background=t.background.clone()),t.environment!==null&&(this.environment=t.environment.clone()),t.fog!==null&&(this.fog=t.fog.clone()),this.backgroundBlurriness=t.backgroundBlurriness,this.backgroundIntensity=t.backgroundIntensity,this.backgroundRotation.copy(t.backgroundRotation),this.environmentIntensity=t.environmentIntensity,this.environmentRotation.copy(t.environmentRotation),t.overrideMaterial!==null&&(this.overrideMaterial=t.overrideMaterial.clone()),this.matrixAutoUpdate=t.matrixAutoUpdate,this}toJSON(t){let e=super.toJSON(t);return this.fog!==null&&(e.object.fog=this.fog.toJSON()),this.backgroundBlurriness>0&&(e.object.backgroundBlurriness=this.backgroundBlurriness),this.backgroundIntensity!==1&&(e.object.backgroundIntensity=this.backgroundIntensity),e.object.backgroundRotation=this.backgroundRotation.toArray(),this.environmentIntensity!==1&&(e.object.environmentIntensity=this.environmentIntensity),e.object.environmentRotation=this.environmentRotation.toArray(),e}};var Ma=class extends Un{constructor(t=null,e=1,n=1,s,r,o,a,l,c=Dn,u=Dn,f,h){super(null,o,a,l,c,u,s,r,f,h),this.isDataTexture=!0,this.image={data:t,width:e,height:n},this.generateMipmaps=!1,this.flipY=!1,this.unpackAlignment=1}};var Yc=class extends As{static get type(){return"LineBasicMaterial"}constructor(t){super(),this.isLineBasicMaterial=!0,this.color=new ge(16777215),this.map=null,this.linewidth=1,this.linecap="round",this.linejoin="round",this.fog=!0,this.setValues(t)}copy(t){return super.copy(t),this.color.copy(t.color),this.map=t.map,this.linewidth=t.linewidth,this.linecap=t.linecap,this.linejoin=t.linejoin,this.fog=t.fog,this}},Sa=new H,ba=new H,Af=new We,Qr=new wr,Jo=new br,Gl=new H,Cf=new H,qc=class extends Yn{constructor(t=new ai,e=new Yc){super(),this.isLine=!0,this.type="Line",this.geometry=t,this.material=e,this.updateMorphTargets()}copy(t,e){return super.copy(t,e),this.material=Array.isArray(t.material)?t.material.slice():t.material,this.geometry=t.geometry,this}computeLineDistances(){let t=this.geometry;if(t.index===null){let e=t.attributes.position,n=[0];for(let s=1,r=e.count;s<r;s++)Sa.fromBufferAttribute(e,s-1),ba.fromBufferAttribute(e,s),n[s]=n[s-1],n[s]+=Sa.distanceTo(ba);t.setAttribute("lineDistance",new ri(n,1))}else console.warn("THREE.Line.computeLineDistances(): Computation only possible with non-indexed BufferGeometry.");return this}raycast(t,e){let n=this.geometry,s=this.matrixWorld,r=t.params.Line.threshold,o=n.drawRange;if(n.boundingSphere===null&&n.computeBoundingSphere(),Jo.copy(n.boundingSphere),Jo.applyMatrix4(s),Jo.radius+=r,t.ray.intersectsSphere(Jo)===!1)return;Af.copy(s).invert(),Qr.copy(t.ray).applyMatrix4(Af);let a=r/((this.scale.x+this.scale.y+this.scale.z)/3),l=a*a,c=this.isLineSegments?2:1,u=n.index,h=n.attributes.position;if(u!==null){let p=Math.max(0,o.start),_=Math.min(u.count,o.start+o.count);for(let x=p,m=_-1;x<m;x+=c){let d=u.getX(x),A=u.getX(x+1),w=Ko(this,t,Qr,l,d,A);w&&e.push(w)}if(this.isLineLoop){let x=u.getX(_-1),m=u.getX(p),d=Ko(this,t,Qr,l,x,m);d&&e.push(d)}}else{let p=Math.max(0,o.start),_=Math.min(h.count,o.start+o.count);for(let x=p,m=_-1;x<m;x+=c){let d=Ko(this,t,Qr,l,x,x+1);d&&e.push(d)}if(this.isLineLoop){let x=Ko(this,t,Qr,l,_-1,p);x&&e.push(x)}}}updateMorphTargets(){let e=this.geometry.morphAttributes,n=Object.keys(e);if(n.length>0){let s=e[n[0]];if(s!==void 0){this.morphTargetInfluences=[],this.morphTargetDictionary={};for(let r=0,o=s.length;r<o;r++){let a=s[r].name||String(r);this.morphTargetInfluences.push(0),this.morphTargetDictionary[a]=r}}}}};function Ko(i,t,e,n,s,r){let o=i.geometry.attributes.position;if(Sa.fromBufferAttribute(o,s),ba.fromBufferAttribute(o,r),e.distanceSqToSegment(Sa,ba,Gl,Cf)>n)return;Gl.applyMatrix4(i.matrixWorld);let l=t.ray.origin.distanceTo(Gl);if(!(l<t.near||l>t.far))return{distance:l,point:Cf.clone().applyMatrix4(i.matrixWorld),index:s,face:null,faceIndex:null,barycoord:null,object:i}}var Rf=new H,Pf=new H,wa=class extends qc{constructor(t,e){super(t,e),this.isLineSegments=!0,this.type="LineSegments"}computeLineDistances(){let t=this.geometry;if(t.index===null){let e=t.attributes.position,n=[];for(let s=0,r=e.count;s<r;s+=2)Rf.fromBufferAttribute(e,s),Pf.fromBufferAttribute(e,s+1),n[s]=s===0?0:n[s-1],n[s+1]=n[s]+Rf.distanceTo(Pf);t.setAttribute("lineDistance",new ri(n,1))}else console.warn("THREE.LineSegments.computeLineDistances(): Computation only possible with non-indexed BufferGeometry.");return this}};function jo(i,t,e){return!i||!e&&i.constructor===t?i:typeof t.BYTES_PER_ELEMENT=="number"?new t(i):Array.prototype.slice.call(i)}function uv(i){return ArrayBuffer.isView(i)&&!(i instanceof DataView)}var Tr=class{constructor(t,e,n,s){this.parameterPositions=t,this._cachedIndex=0,this.resultBuffer=s!==void 0?s:new e.constructor(n),this.sampleValues=e,this.valueSize=n,this.settings=null,this.DefaultSettings_={}}evaluate(t){let e=this.parameterPositions,n=this._cachedIndex,s=e[n],r=e[n-1];n:{t:{let o;e:{i:if(!(t<s)){for(let a=n+2;;){if(s===void 0){if(t<r)break i;return n=e.length,this._cachedIndex=n,this.copySampleValue_(n-1)}if(n===a)break;if(r=s,s=e[++n],t<s)break t}o=e.length;break e}if(!(t>=r)){let a=e[1];t<a&&(n=2,r=a);for(let l=n-2;;){if(r===void 0)return this._cachedIndex=0,this.copySampleValue_(0);if(n===l)break;if(s=r,r=e[--n-1],t>=r)break t}o=n,n=0;break e}break n}for(;n<o;){let a=n+o>>>1;t<e[a]?o=a:n=a+1}if(s=e[n],r=e[n-1],r===void 0)return this._cachedIndex=0,this.copySampleValue_(0);if(s===void 0)return n=e.length,this._cachedIndex=n,this.copySampleValue_(n-1)}this._cachedIndex=n,this.intervalChanged_(n,r,s)}return this.interpolate_(n,r,t,s)}getSettings_(){return this.settings||this.DefaultSettings_}copySampleValue_(t){let e=this.resultBuffer,n=this.sampleValues,s=this.valueSize,r=t*s;for(let o=0;o!==s;++o)e[o]=n[r+o];return e}interpolate_(){throw new Error("call to abstract method")}intervalChanged_(){}},$c=class extends Tr{constructor(t,e,n,s){super(t,e,n,s),this._weightPrev=-0,this._offsetPrev=-0,this._weightNext=-0,this._offsetNext=-0,this.DefaultSettings_={endingStart:Ru,endingEnd:Ru}}intervalChanged_(t,e,n){let s=this.parameterPositions,r=t-2,o=t+1,a=s[r],l=s[o];if(a===void 0)switch(this.getSettings_().endingStart){case Pu:r=t,a=2*e-n;break;case Iu:r=s.length-2,a=e+s[r]-s[r+1];break;default:r=t,a=n}if(l===void 0)switch(this.getSettings_().endingEnd){case Pu:o=t,l=2*n-e;break;case Iu:o=1,l=n+s[1]-s[0];break;default:o=t-1,l=e}let c=(n-e)*.5,u=this.valueSize;this._weightPrev=c/(e-a),this._weightNext=c/(l-n),this._offsetPrev=r*u,this._offsetNext=o*u}interpolate_(t,e,n,s){let r=this.resultBuffer,o=this.sampleValues,a=this.valueSize,l=t*a,c=l-a,u=this._offsetPrev,f=this._offsetNext,h=this._weightPrev,p=this._weightNext,_=(n-e)/(s-e),x=_*_,m=x*_,d=-h*m+2*h*x-h*_,A=(1+h)*m+(-1.5-2*h)*x+(-.5+h)*_+1,w=(-1-p)*m+(1.5+p)*x+.5*_,b=p*m-p*x;for(let D=0;D!==a;++D)r[D]=d*o[u+D]+A*o[c+D]+w*o[l+D]+b*o[f+D];return r}},Zc=class extends Tr{constructor(t,e,n,s){super(t,e,n,s)}interpolate_(t,e,n,s){let r=this.resultBuffer,o=this.sampleValues,a=this.valueSize,l=t*a,c=l-a,u=(n-e)/(s-e),f=1-u;for(let h=0;h!==a;++h)r[h]=o[c+h]*f+o[l+h]*u;return r}},Jc=class extends Tr{constructor(t,e,n,s){super(t,e,n,s)}interpolate_(t){return this.copySampleValue_(t-1)}},li=class{constructor(t,e,n,s){if(t===void 0)throw new Error("THREE.KeyframeTrack: track name is undefined");if(e===void 0||e.length===0)throw new Error("THREE.KeyframeTrack: no keyframes in track named "+t);this.name=t,this.times=jo(e,this.TimeBufferType),this.values=jo(n,this.ValueBufferType),this.setInterpolation(s||this.DefaultInterpolation)}static toJSON(t){let e=t.constructor,n;if(e.toJSON!==this.toJSON)n=e.toJSON(t);else{n={name:t.name,times:jo(t.times,Array),values:jo(t.values,Array)};let s=t.getInterpolation();s!==t.DefaultInterpolation&&(n.interpolation=s)}return n.type=t.ValueTypeName,n}InterpolantFactoryMethodDiscrete(t){return new Jc(this.times,this.values,this.getValueSize(),t)}InterpolantFactoryMethodLinear(t){return new Zc(this.times,this.values,this.getValueSize(),t)}InterpolantFactoryMethodSmooth(t){return new $c(this.times,this.values,this.getValueSize(),t)}setInterpolation(t){let e;switch(t){case sa:e=this.InterpolantFactoryMethodDiscrete;break;case Rc:e=this.InterpolantFactoryMethodLinear;break;case gl:e=this.InterpolantFactoryMethodSmooth;break}if(e===void 0){let n="unsupported interpolation for "+this.ValueTypeName+" keyframe track named "+this.name;if(this.createInterpolant===void 0)if(t!==this.DefaultInterpolation)this.setInterpolation(this.DefaultInterpolation);else throw new Error(n);return console.warn("THREE.KeyframeTrack:",n),this}return this.createInterpolant=e,this}getInterpolation(){switch(this.createInterpolant){case this.InterpolantFactoryMethodDiscrete:return sa;case this.InterpolantFactoryMethodLinear:return Rc;case this.InterpolantFactoryMethodSmooth:return gl}}getValueSize(){return this.values.length/this.times.length}shift(t){if(t!==0){let e=this.times;for(let n=0,s=e.length;n!==s;++n)e[n]+=t}return this}scale(t){if(t!==1){let e=this.times;for(let n=0,s=e.length;n!==s;++n)e[n]*=t}return this}trim(t,e){let n=this.times,s=n.length,r=0,o=s-1;for(;r!==s&&n[r]<t;)++r;for(;o!==-1&&n[o]>e;)--o;if(++o,r!==0||o!==s){r>=o&&(o=Math.max(o,1),r=o-1);let a=this.getValueSize();this.times=n.slice(r,o),this.values=this.values.slice(r*a,o*a)}return this}validate(){let t=!0,e=this.getValueSize();e-Math.floor(e)!==0&&(console.error("THREE.KeyframeTrack: Invalid value size in track.",this),t=!1);let n=this.times,s=this.values,r=n.length;r===0&&(console.error("THREE.KeyframeTrack: Track is empty.",this),t=!1);let o=null;for(let a=0;a!==r;a++){let l=n[a];if(typeof l=="number"&&isNaN(l)){console.error("THREE.KeyframeTrack: Time is not a valid number.",this,a,l),t=!1;break}if(o!==null&&o>l){console.error("THREE.KeyframeTrack: Out of order keys.",this,a,l,o),t=!1;break}o=l}if(s!==void 0&&uv(s))for(let a=0,l=s.length;a!==l;++a){let c=s[a];if(isNaN(c)){console.error("THREE.KeyframeTrack: Value is not a valid number.",this,a,c),t=!1;break}}return t}optimize(){let t=this.times.slice(),e=this.values.slice(),n=this.getValueSize(),s=this.getInterpolation()===gl,r=t.length-1,o=1;for(let a=1;a<r;++a){let l=!1,c=t[a],u=t[a+1];if(c!==u&&(a!==1||c!==t[0]))if(s)l=!0;else{let f=a*n,h=f-n,p=f+n;for(let _=0;_!==n;++_){let x=e[f+_];if(x!==e[h+_]||x!==e[p+_]){l=!0;break}}}if(l){if(a!==o){t[o]=t[a];let f=a*n,h=o*n;for(let p=0;p!==n;++p)e[h+p]=e[f+p]}++o}}if(r>0){t[o]=t[r];for(let a=r*n,l=o*n,c=0;c!==n;++c)e[l+c]=e[a+c];++o}return o!==t.length?(this.times=t.slice(0,o),this.values=e.slice(0,o*n)):(this.times=t,this.values=e),this}clone(){let t=this.times.slice(),e=this.values.slice(),n=this.constructor,s=new n(this.name,t,e);return s.createInterpolant=this.createInterpolant,s}};li.prototype.TimeBufferType=Float32Array;li.prototype.ValueBufferType=Float32Array;li.prototype.DefaultInterpolation=Rc;var Cs=class extends li{constructor(t,e,n){super(t,e,n)}};Cs.prototype.ValueTypeName="bool";Cs.prototype.ValueBufferType=Array;Cs.prototype.DefaultInterpolation=sa;Cs.prototype.InterpolantFactoryMethodLinear=void 0;Cs.prototype.InterpolantFactoryMethodSmooth=void 0;var Kc=class extends li{};Kc.prototype.ValueTypeName="color";var jc=class extends li{};jc.prototype.ValueTypeName="number";var Qc=class extends Tr{constructor(t,e,n,s){super(t,e,n,s)}interpolate_(t,e,n,s){let r=this.resultBuffer,o=this.sampleValues,a=this.valueSize,l=(n-e)/(s-e),c=t*a;for(let u=c+a;c!==u;c+=4)oi.slerpFlat(r,0,o,c-a,o,c,l);return r}},Ea=class extends li{InterpolantFactoryMethodLinear(t){return new Qc(this.times,this.values,this.getValueSize(),t)}};Ea.prototype.ValueTypeName="quaternion";Ea.prototype.InterpolantFactoryMethodSmooth=void 0;var Rs=class extends li{constructor(t,e,n){super(t,e,n)}};Rs.prototype.ValueTypeName="string";Rs.prototype.ValueBufferType=Array;Rs.prototype.DefaultInterpolation=sa;Rs.prototype.InterpolantFactoryMethodLinear=void 0;Rs.prototype.InterpolantFactoryMethodSmooth=void 0;var th=class extends li{};th.prototype.ValueTypeName="vector";var eh=class{constructor(t,e,n){let s=this,r=!1,o=0,a=0,l,c=[];this.onStart=void 0,this.onLoad=t,this.onProgress=e,this.onError=n,this.itemStart=function(u){a++,r===!1&&s.onStart!==void 0&&s.onStart(u,o,a),r=!0},this.itemEnd=function(u){o++,s.onProgress!==void 0&&s.onProgress(u,o,a),o===a&&(r=!1,s.onLoad!==void 0&&s.onLoad())},this.itemError=function(u){s.onError!==void 0&&s.onError(u)},this.resolveURL=function(u){return l?l(u):u},this.setURLModifier=function(u){return l=u,this},this.addHandler=function(u,f){return c.push(u,f),this},this.removeHandler=function(u){let f=c.indexOf(u);return f!==-1&&c.splice(f,2),this},this.getHandler=function(u){for(let f=0,h=c.length;f<h;f+=2){let p=c[f],_=c[f+1];if(p.global&&(p.lastIndex=0),p.test(u))return _}return null}}},fv=new eh,nh=class{constructor(t){this.manager=t!==void 0?t:fv,this.crossOrigin="anonymous",this.withCredentials=!1,this.path="",this.resourcePath="",this.requestHeader={}}load(){}loadAsync(t,e){let n=this;return new Promise(function(s,r){n.load(t,s,e,r)})}parse(){}setCrossOrigin(t){return this.crossOrigin=t,this}setWithCredentials(t){return this.withCredentials=t,this}setPath(t){return this.path=t,this}setResourcePath(t){return this.resourcePath=t,this}setRequestHeader(t){return this.requestHeader=t,this}};nh.DEFAULT_MATERIAL_NAME="__DEFAULT";var dh="\\[\\]\\.:\\/",dv=new RegExp("["+dh+"]","g"),ph="[^"+dh+"]",pv="[^"+dh.replace("\\.","")+"]",mv=/((?:WC+[\/:])*)/.source.replace("WC",ph),gv=/(WCOD+)?/.source.replace("WCOD",pv),_v=/(?:\.(WC+)(?:\[(.+)\])?)?/.source.replace("WC",ph),xv=/\.(WC+)(?:\[(.+)\])?/.source.replace("WC",ph),yv=new RegExp("^"+mv+gv+_v+xv+"$"),vv=["material","materials","bones","map"],ih=class{constructor(t,e,n){let s=n||Oe.parseTrackName(e);this._targetGroup=t,this._bindings=t.subscribe_(e,s)}getValue(t,e){this.bind();let n=this._targetGroup.nCachedObjects_,s=this._bindings[n];s!==void 0&&s.getValue(t,e)}setValue(t,e){let n=this._bindings;for(let s=this._targetGroup.nCachedObjects_,r=n.length;s!==r;++s)n[s].setValue(t,e)}bind(){let t=this._bindings;for(let e=this._targetGroup.nCachedObjects_,n=t.length;e!==n;++e)t[e].bind()}unbind(){let t=this._bindings;for(let e=this._targetGroup.nCachedObjects_,n=t.length;e!==n;++e)t[e].unbind()}},Oe=class i{constructor(t,e,n){this.path=e,this.parsedPath=n||i.parseTrackName(e),this.node=i.findNode(t,this.parsedPath.nodeName),this.rootNode=t,this.getValue=this._getValue_unbound,this.setValue=this._setValue_unbound}static create(t,e,n){return t&&t.isAnimationObjectGroup?new i.Composite(t,e,n):new i(t,e,n)}static sanitizeNodeName(t){return t.replace(/\s/g,"_").replace(dv,"")}static parseTrackName(t){let e=yv.exec(t);if(e===null)throw new Error("PropertyBinding: Cannot parse trackName: "+t);let n={nodeName:e[2],objectName:e[3],objectIndex:e[4],propertyName:e[5],propertyIndex:e[6]},s=n.nodeName&&n.nodeName.lastIndexOf(".");if(s!==void 0&&s!==-1){let r=n.nodeName.substring(s+1);vv.indexOf(r)!==-1&&(n.nodeName=n.nodeName.substring(0,s),n.objectName=r)}if(n.propertyName===null||n.propertyName.length===0)throw new Error("PropertyBinding: can not parse propertyName from trackName: "+t);return n}static findNode(t,e){if(e===void 0||e===""||e==="."||e===-1||e===t.name||e===t.uuid)return t;if(t.skeleton){let n=t.skeleton.getBoneByName(e);if(n!==void 0)return n}if(t.children){let n=function(r){for(let o=0;o<r.length;o++){let a=r[o];if(a.name===e||a.uuid===e)return a;let l=n(a.children);if(l)return l}return null},s=n(t.children);if(s)return s}return null}_getValue_unavailable(){}_setValue_unavailable(){}_getValue_direct(t,e){t[e]=this.targetObject[this.propertyName]}_getValue_array(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)t[e++]=n[s]}_getValue_arrayElement(t,e){t[e]=this.resolvedProperty[this.propertyIndex]}_getValue_toArray(t,e){this.resolvedProperty.toArray(t,e)}_setValue_direct(t,e){this.targetObject[this.propertyName]=t[e]}_setValue_direct_setNeedsUpdate(t,e){this.targetObject[this.propertyName]=t[e],this.targetObject.needsUpdate=!0}_setValue_direct_setMatrixWorldNeedsUpdate(t,e){this.targetObject[this.propertyName]=t[e],this.targetObject.matrixWorldNeedsUpdate=!0}_setValue_array(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)n[s]=t[e++]}_setValue_array_setNeedsUpdate(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)n[s]=t[e++];this.targetObject.needsUpdate=!0}_setValue_array_setMatrixWorldNeedsUpdate(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)n[s]=t[e++];this.targetObject.matrixWorldNeedsUpdate=!0}_setValue_arrayElement(t,e){this.resolvedProperty[this.propertyIndex]=t[e]}_setValue_arrayElement_setNeedsUpdate(t,e){this.resolvedProperty[this.propertyIndex]=t[e],this.targetObject.needsUpdate=!0}_setValue_arrayElement_setMatrixWorldNeedsUpdate(t,e){this.resolvedProperty[this.propertyIndex]=t[e],this.targetObject.matrixWorldNeedsUpdate=!0}_setValue_fromArray(t,e){this.resolvedProperty.fromArray(t,e)}_setValue_fromArray_setNeedsUpdate(t,e){this.resolvedProperty.fromArray(t,e),this.targetObject.needsUpdate=!0}_setValue_fromArray_setMatrixWorldNeedsUpdate(t,e){this.resolvedProperty.fromArray(t,e),this.targetObject.matrixWorldNeedsUpdate=!0}_getValue_unbound(t,e){this.bind(),this.getValue(t,e)}_setValue_unbound(t,e){this.bind(),this.setValue(t,e)}bind(){let t=this.node,e=this.parsedPath,n=e.objectName,s=e.propertyName,r=e.propertyIndex;if(t||(t=i.findNode(this.rootNode,e.nodeName),this.node=t),this.getValue=this._getValue_unavailable,this.setValue=this._setValue_unavailable,!t){console.warn("THREE.PropertyBinding: No target node found for track: "+this.path+".");return}if(n){let c=e.objectIndex;switch(n){case"materials":if(!t.material){console.error("THREE.PropertyBinding: Can not bind to material as node does not have a material.",this);return}if(!t.material.materials){console.error("THREE.PropertyBinding: Can not bind to material.materials as node.material does not have a materials array.",this);return}t=t.material.materials;break;case"bones":if(!t.skeleton){console.error("THREE.PropertyBinding: Can not bind to bones as node does not have a skeleton.",this);return}t=t.skeleton.bones;for(let u=0;u<t.length;u++)if(t[u].name===c){c=u;break}break;case"map":if("map"in t){t=t.map;break}if(!t.material){console.error("THREE.PropertyBinding: Can not bind to material as node does not have a material.",this);return}if(!t.material.map){console.error("THREE.PropertyBinding: Can not bind to material.map as node.material does not have a map.",this);return}t=t.material.map;break;default:if(t[n]===void 0){console.error("THREE.PropertyBinding: Can not bind to objectName of node undefined.",this);return}t=t[n]}if(c!==void 0){if(t[c]===void 0){console.error("THREE.PropertyBinding: Trying to bind to objectIndex of objectName, but is undefined.",this,t);return}t=t[c]}}let o=t[s];if(o===void 0){let c=e.nodeName;console.error("THREE.PropertyBinding: Trying to update property for track: "+c+"."+s+" but it wasn't found.",t);return}let a=this.Versioning.None;this.targetObject=t,t.needsUpdate!==void 0?a=this.Versioning.NeedsUpdate:t.matrixWorldNeedsUpdate!==void 0&&(a=this.Versioning.MatrixWorldNeedsUpdate);let l=this.BindingType.Direct;if(r!==void 0){if(s==="morphTargetInfluences"){if(!t.geometry){console.error("THREE.PropertyBinding: Can not bind to morphTargetInfluences because node does not have a geometry.",this);return}if(!t.geometry.morphAttributes){console.error("THREE.PropertyBinding: Can not bind to morphTargetInfluences because node does not have a geometry.morphAttributes.",this);return}t.morphTargetDictionary[r]!==void 0&&(r=t.morphTargetDictionary[r])}l=this.BindingType.ArrayElement,this.resolvedProperty=o,this.propertyIndex=r}else o.fromArray!==void 0&&o.toArray!==void 0?(l=this.BindingType.HasFromToArray,this.resolvedProperty=o):Array.isArray(o)?(l=this.BindingType.EntireArray,this.resolvedProperty=o):this.propertyName=s;this.getValue=this.GetterByBindingType[l],this.setValue=this.SetterByBindingTypeAndVersioning[l][a]}unbind(){this.node=null,this.getValue=this._getValue_unbound,this.setValue=this._setValue_unbound}};Oe.Composite=ih;Oe.prototype.BindingType={Direct:0,EntireArray:1,ArrayElement:2,HasFromToArray:3};Oe.prototype.Versioning={None:0,NeedsUpdate:1,MatrixWorldNeedsUpdate:2};Oe.prototype.GetterByBindingType=[Oe.prototype._getValue_direct,Oe.prototype._getValue_array,Oe.prototype._getValue_arrayElement,Oe.prototype._getValue_toArray];Oe.prototype.SetterByBindingTypeAndVersioning=[[Oe.prototype._setValue_direct,Oe.prototype._setValue_direct_setNeedsUpdate,Oe.prototype._setValue_direct_setMatrixWorldNeedsUpdate],[Oe.prototype._setValue_array,Oe.prototype._setValue_array_setNeedsUpdate,Oe.prototype._setValue_array_setMatrixWorldNeedsUpdate],[Oe.prototype._setValue_arrayElement,Oe.prototype._setValue_arrayElement_setNeedsUpdate,Oe.prototype._setValue_arrayElement_setMatrixWorldNeedsUpdate],[Oe.prototype._setValue_fromArray,Oe.prototype._setValue_fromArray_setNeedsUpdate,Oe.prototype._setValue_fromArray_setMatrixWorldNeedsUpdate]];var JS=new Float32Array(1);var co=class{constructor(t=1,e=0,n=0){return this.radius=t,this.phi=e,this.theta=n,this}set(t,e,n){return this.radius=t,this.phi=e,this.theta=n,this}copy(t){return this.radius=t.radius,this.phi=t.phi,this.theta=t.theta,this}makeSafe(){return this.phi=Math.max(1e-6,Math.min(Math.PI-1e-6,this.phi)),this}setFromVector3(t){return this.setFromCartesianCoords(t.x,t.y,t.z)}setFromCartesianCoords(t,e,n){return this.radius=Math.sqrt(t*t+e*e+n*n),this.radius===0?(this.theta=0,this.phi=0):(this.theta=Math.atan2(t,n),this.phi=Math.acos(fn(e/this.radius,-1,1))),this}clone(){return new this.constructor().copy(this)}};var Ta=class extends Oi{constructor(t,e=null){super(),this.object=t,this.domElement=e,this.enabled=!0,this.state=-1,this.keys={},this.mouseButtons={LEFT:null,MIDDLE:null,RIGHT:null},this.touches={ONE:null,TWO:null}}connect(){}disconnect(){}dispose(){}update(){}};typeof __THREE_DEVTOOLS__<"u"&&__THREE_DEVTOOLS__.dispatchEvent(new CustomEvent("register",{detail:{revision:sh}}));typeof window<"u"&&(window.__THREE__?console.warn("WARNING: Multiple instances of Three.js being imported."):window.__THREE__=sh);var Mv=Math.cos(Math.PI/6),mh=6,td=1e9,Pa=class i{static async load(t,e){let n=new i,s=["ids","triangles","triangleElements","edges","beams","beamElements","elementIds"];await Promise.all(s.map(async l=>n[l]=await t.integers(e.blobs[l])));let[r,o,a]=await t.values(e.blobs.points,3,32);n.numPoints=r.length,n.points=new Float32Array(3*r.length);for(let l=0;l<r.length;++l)n.points.set([r[l],o[l],a[l]],3*l);return n.origin=e.origin,n.parts=e.parts,n.materials=e.materials,n.sets=e.sets,n.shown=e.parts.map(()=>!0),n.measure(),n.makeCorners(),n}measure(){this.least=[1/0,1/0,1/0],this.greatest=[-1/0,-1/0,-1/0];for(let t=0;t<this.points.length;++t)this.least[t%3]=Math.min(this.least[t%3],this.points[t]),this.greatest[t%3]=Math.max(this.greatest[t%3],this.points[t]);this.size=Math.hypot(...this.greatest.map((t,e)=>t-this.least[e]))||1}makeCorners(){let t=this.triangleElements.length,e=6*mh,n=3*t+e*this.beamElements.length;this.cornerPoints=new Uint32Array(n),this.cornerElements=new Uint32Array(n),this.cornerPlaces=new Float32Array(3*n),this.cornerPoints.set(this.triangles);for(let s=0;s<t;++s)this.cornerElements.fill(this.triangleElements[s],3*s,3*s+3);this.radius=this.size/250;for(let s=0;s<this.beamElements.length;++s)this.makePrism(s,3*t+e*s);for(let s=0;s<3*t;++s)this.cornerPlaces.set(this.points.subarray(3*this.cornerPoints[s],3*this.cornerPoints[s]+3),3*s);this.numTriangles=t,this.perBeam=e,this.positions=new an(this.cornerPlaces,3)}pointAt(t){return Array.from(this.points.subarray(3*t,3*t+3))}makePrism(t,e){let n=[this.beams[2*t],this.beams[2*t+1]],[s,r]=n.map(h=>this.pointAt(h)),o=r.map((h,p)=>h-s[p]),a=Math.abs(o[2])<.9*Math.hypot(...o)?[0,0,1]:[1,0,0],l=_h(gh(o,a)),c=_h(gh(o,l)),u=(h,p)=>{let _=2*Math.PI*p/mh;return(h?r:s).map((x,m)=>x+this.radius*(Math.cos(_)*l[m]+Math.sin(_)*c[m]))},f=e;for(let h=0;h<mh;++h)for(let[p,_]of[[0,0],[0,1],[1,1],[0,0],[1,1],[1,0]])this.cornerPoints[f]=n[p],this.cornerElements[f]=this.beamElements[t],this.cornerPlaces.set(u(p,h+_),3*f),++f}outline(){if(this.outlineEdges)return this.outlineEdges;let t=[],e=[];for(let n of this.parts){let s=new Map,[r,o]=n.triangles;for(let l=r;l<r+o;++l){let c=this.triangles.subarray(3*l,3*l+3),u=this.normalOf(c);for(let f=0;f<3;++f){let h=ed(c[f],c[(f+1)%3],this.numPoints),p=s.get(h);p?p.push(u):s.set(h,[u])}}let a=t.length/2;for(let l=n.edges[0];l<n.edges[0]+n.edges[1];++l){let[c,u]=[this.edges[2*l],this.edges[2*l+1]],f=s.get(ed(c,u,this.numPoints))??[];f.length===2&&Rr(f[0],f[1])>Mv||t.push(c,u)}e.push([a,t.length/2-a])}return this.outlineEdges={edges:Uint32Array.from(t),rows:e},this.outlineEdges}normalOf([t,e,n]){let s=this.points,r=(o,a)=>[0,1,2].map(l=>s[3*a+l]-s[3*o+l]);return _h(gh(r(t,e),r(t,n)))}show(t){this.shown=this.parts.map(t)}setGroups(t){t.clearGroups(),this.parts.forEach((e,n)=>{this.shown[n]&&(t.addGroup(3*e.triangles[0],3*e.triangles[1],0),e.beams[1]&&t.addGroup(3*this.numTriangles+this.perBeam*e.beams[0],this.perBeam*e.beams[1],0))})}setLineGroups(t,e){t.clearGroups(),e.forEach(([n,s],r)=>{this.shown[r]&&s&&t.addGroup(2*n,2*s,0)})}makeFaceGeometry(){let t=new ai;return t.setAttribute("position",this.positions),t.setAttribute("displacement",new an(new Float32Array(this.cornerPlaces.length),3)),t.setAttribute("place",new an(new Float32Array(this.cornerPoints.length),1)),this.setGroups(t),t}makeLineGeometry(t){let e=new ai,n=new Float32Array(3*t.length);for(let s=0;s<t.length;++s)n.set(this.points.subarray(3*t[s],3*t[s]+3),3*s);return e.setAttribute("position",new an(n,3)),e.setAttribute("displacement",new an(new Float32Array(n.length),3)),e}setDisplacements(t,e,n){let s=t.getAttribute("displacement"),r=s.array;if(!n)r.fill(0);else for(let o=0;o<e.length;++o)for(let a=0;a<3;++a)r[3*o+a]=n[a][e[o]]||0;s.needsUpdate=!0}setPlaces(t,e,n,s){let r=e?this.cornerElements:this.cornerPoints,o=t.getAttribute("place"),a=Float32Array.from(n??[],l=>{let c=s(l);return Number.isFinite(c)?Math.max(-1e3,Math.min(1e3,c)):td});for(let l=0;l<r.length;++l)o.array[l]=n?a[r[l]]:td;o.needsUpdate=!0}deformed(t,e){if(!t||e===0)return this.points;let n=new Float32Array(this.points);for(let s=0;s<this.numPoints;++s)for(let r=0;r<3;++r)n[3*s+r]+=e*(t[r][s]||0);return n}visible(){if(this.visibleOf===this.shown)return this.visibleRows;let t=new Uint8Array(this.numPoints),e=new Uint8Array(this.elementIds.length);return this.parts.forEach((n,s)=>{if(!this.shown[s])return;let[r,o]=n.triangles;for(let a=r;a<r+o;++a){e[this.triangleElements[a]]=1;for(let l=0;l<3;++l)t[this.triangles[3*a+l]]=1}for(let a=n.beams[0];a<n.beams[0]+n.beams[1];++a)e[this.beamElements[a]]=1,t[this.beams[2*a]]=t[this.beams[2*a+1]]=1}),this.visibleOf=this.shown,this.visibleRows={points:t,elements:e},this.visibleRows}findNode(t){return this.ids.indexOf(t)}middleOf(t,e){let n=[0,0,0,0],s=r=>{for(let o=0;o<3;++o)n[o]+=e[3*r+o];++n[3]};for(let r=0;r<this.numTriangles;++r)this.triangleElements[r]===t&&this.triangles.subarray(3*r,3*r+3).forEach(s);for(let r=0;r<this.beamElements.length;++r)this.beamElements[r]===t&&this.beams.subarray(2*r,2*r+2).forEach(s);return n.slice(0,3).map(r=>r/n[3])}pick(t,e,n,s){let r=null,o=1/0;this.parts.forEach((u,f)=>{if(this.shown[f])for(let h=u.triangles[0];h<u.triangles[0]+u.triangles[1];++h){let p=this.meet(h,t,e,n,o);!p||s&&this.isCutOff(h,p,s)||(o=p.distance,r={t:h,...p})}});let a=this.pickBeam(t,e,n,s,o);if(a)return a;if(!r)return null;let l=[1-r.u-r.v,r.u,r.v],c=l.indexOf(Math.max(...l));return{distance:o,element:this.triangleElements[r.t],point:this.triangles[3*r.t+c]}}meet(t,e,n,s,r){let o=3*this.triangles[3*t],a=3*this.triangles[3*t+1],l=3*this.triangles[3*t+2],c=s[a]-s[o],u=s[a+1]-s[o+1],f=s[a+2]-s[o+2],h=s[l]-s[o],p=s[l+1]-s[o+1],_=s[l+2]-s[o+2],x=n[1]*_-n[2]*p,m=n[2]*h-n[0]*_,d=n[0]*p-n[1]*h,A=c*x+u*m+f*d;if(A===0)return null;let w=e[0]-s[o],b=e[1]-s[o+1],D=e[2]-s[o+2],L=(w*x+b*m+D*d)/A;if(!(L>=0&&L<=1))return null;let I=b*f-D*u,U=D*c-w*f,E=w*u-b*c,M=(n[0]*I+n[1]*U+n[2]*E)/A;if(!(M>=0&&L+M<=1))return null;let C=(h*I+p*U+_*E)/A;return C<r?{distance:C,u:L,v:M}:null}isCutOff(t,{u:e,v:n},[s,r,o,a]){let l=[1-e-n,e,n],c=-a;for(let u=0;u<3;++u){let f=3*this.triangles[3*t+u];c+=l[u]*(s*this.points[f]+r*this.points[f+1]+o*this.points[f+2])}return c>0}pickBeam(t,e,n,s,r){let o=null;return this.parts.forEach((a,l)=>{if(this.shown[l])for(let c=a.beams[0];c<a.beams[0]+a.beams[1];++c){let u=[this.beams[2*c],this.beams[2*c+1]],[f,h]=u.map(d=>[n[3*d],n[3*d+1],n[3*d+2]]),{distance:p,apart:_,along:x}=Sv(t,e,f,h);if(_>1.5*this.radius||p-this.radius>=r)continue;let m=u[x<.5?0:1];s&&Rr(s,this.pointAt(m))>s[3]||(r=p-this.radius,o={distance:r,element:this.beamElements[c],point:m})}}),o}},gh=(i,t)=>[i[1]*t[2]-i[2]*t[1],i[2]*t[0]-i[0]*t[2],i[0]*t[1]-i[1]*t[0]],Rr=(i,t)=>i[0]*t[0]+i[1]*t[1]+i[2]*t[2],_h=i=>{let t=Math.hypot(...i)||1;return i.map(e=>e/t)},ed=(i,t,e)=>i<t?i*e+t:t*e+i;function Sv(i,t,e,n){let s=n.map((_,x)=>_-e[x]),r=e.map((_,x)=>_-i[x]),[o,a,l,c]=[Rr(t,s),Rr(s,s),Rr(t,r),Rr(s,r)],u=a-o*o,f=Math.max(0,Math.min(1,u>1e-12*a?(o*l-c)/u:0)),h=l+f*o,p=Math.hypot(...e.map((_,x)=>_+f*s[x]-i[x]-h*t[x]));return{distance:h,apart:p,along:f}}var bv=`440154 470d60 48186a 482374 472d7b 453781 424086 3e4989 3b528b 375b8d 33638d 2f6b8e 2c728e 297a8e 26828e
23898e 21918c 1f988b 1fa088 22a785 28ae80 32b67a 3fbc73 4ec36b 5ec962 70cf57 84d44b 98d83e addc30 c2df23 d8e219 ece51b
fde725`,wv=`3b4cc0 445acc 4e68d7 5875e1 6282ea 6c8ef1 779af7 82a5fb 8db0fe 98b9ff a3c2ff aec9fd b8d0f9 c2d5f4
ccd9ee d5dbe6 dddddd e5d8d1 ecd3c6 f1ccb9 f5c4ad f7bba0 f7b194 f7a687 f49a7b f18d6f ec7f63 e57057 de614c d55042 cb3e38
c0282f b40426`,nd=i=>i.split(/\s+/).map(t=>[0,2,4].map(e=>parseInt(t.slice(e,e+2),16))),Ev={viridis:nd(bv),coolwarm:nd(wv)};function id(i,t){let e=Ev[i],n=Math.max(0,Math.min(1,t))*(e.length-1);if(i==="viridis"){let r=Math.max(0,Math.min(1,t))*255;n=r<=248?r/8:31+(r-248)/7}let s=Math.min(Math.floor(n),e.length-2);return[0,1,2].map(r=>e[s][r]+(e[s+1][r]-e[s][r])*(n-s))}var Ia=class{constructor([t,e]){this.range=[t,e];let[n,s]=[-t,e],r=Math.min(n,s)>0&&Math.min(n,s)>=.05*Math.max(n,s);this.map=r?"coolwarm":"viridis";let o=Math.max(Math.abs(t),Math.abs(e));this.first=r?-o:t,this.length=r?2*o:e-t}positionOf(t){return this.length>0?(Math.max(this.range[0],Math.min(this.range[1],t))-this.first)/this.length:.5}table(t){let e=new Uint8Array(4*t);for(let n=0;n<t;++n)e.set([...id(this.map,n/(t-1)),255],4*n);return e}css(t){return`rgb(${id(this.map,this.positionOf(t)).map(Math.round).join(" ")})`}};function sd([i,t],e){let n=t-i;if(!(n>0))return[i];let s=n/e,r=10**Math.floor(Math.log10(s)),o=r*([1,2,5,10].find(l=>l*r>=s*(1-1e-12))??10),a=[];for(let l=Math.ceil(i/o-1e-9);l*o<=t+1e-9*n;++l)a.push(l*o);return a}function Xe(i){if(typeof i=="string")return i;if(!Number.isFinite(i))return Number.isNaN(i)?"nan":i>0?"inf":"-inf";if(i===0)return"0";let t=Math.abs(i);if(t>=1e6||t<1e-4){let[e,n]=i.toExponential(5).split("e");return`${e.includes(".")?e.replace(/\.?0+$/,""):e}e${Number(n)}`}return String(Number(i.toPrecision(6)))}function Tv(i){let t=["B","KiB","MiB","GiB","TiB"],e=0;for(;i>=1024&&e+1<t.length;++e)i/=1024;return`${e?i.toPrecision(i<10?2:3):i} ${t[e]}`}function Ls(i,t,...e){return rt("section",{id:i,"aria-labelledby":`${i}-title`},rt("h2",{id:`${i}-title`},t),...e)}function rd({overview:i}){let t=i.elements.map(({type:n,count:s})=>`${s} ${n}`).join(", "),e=(n,s)=>`${n} ${s}${n===1?"":"s"}`;return[e(i.nodes,"node"),t,e(i.steps,"step")].filter(Boolean).join(" \xB7 ")}function od(i){return i.length?wi("Our nodal averages less the solver\u2019s, as a fraction of the largest magnitude",["kind","step","largest deviation"],i.map(({kind:t,step:e,deviation:n})=>[t,e,Xe(n)])):rt("p",{},"The solver printed no averages of its own to compare with.")}function ad({results:i,reason:t},e){if(t)return rt("p",{},`Not judged: ${t}.`);let n=i.map(s=>[s.step,s.holds===void 0?"\u2013":s.holds?"holds":"FAILS",s.verdict,rt("span",{},...(s.worst??[]).slice(0,3).map(({node:r,residual:o})=>rt("button.link",{type:"button",onclick:()=>e(r)},`node ${r} (${Xe(o)})`)))]);return wi("Element nodal forces against what the solver says acts on each node",["step","balance","verdict","worst nodes"],n)}function yh(i){return i.length?rt("div",{},...i.flatMap(({iteration:t,files:e,settings:n})=>[wi(`Files of iteration ${t}`,["role","file","bytes","checksum (XXH3)","changed"],e.map(s=>[s.role,s.name,s.bytes,rt("code",{},s.checksum),s.changed])),rt("p",{},n.map(({name:s,value:r})=>`${s}: ${r}`).join(" \xB7 "))])):rt("p",{},"The database does not keep what it was imported from.")}var xh=400;function ld(i){let t=rt("div"),e=rt("p",{role:"status"}),n=r=>{let o=r.toLowerCase().split(/\s+/).filter(Boolean),a=i.filter(({onf:l,kind:c,step:u})=>{let f=`${l} ${c} ${u}`.toLowerCase();return o.every(h=>f.includes(h))});e.textContent=`${a.length} of ${i.length} blocks`+(a.length>xh?`, the first ${xh} are listed`:""),Cn(t,wi("Blocks",["onf","kind","step","records","size","least","greatest","nan"],a.slice(0,xh).map(l=>[l.onf,l.kind,l.step,l.records,Tv(l.bytes),l.least===null?"":Xe(l.least),l.greatest===null?"":Xe(l.greatest),l.nan])))},s=rt("input",{type:"search",id:"block-filter",oninput:()=>n(s.value)});return n(""),rt("div",{},rt("div.control",{},rt("label",{for:"block-filter"},"Filter by kind or step"),s),e,t)}var La=class{constructor(t,e){this.model=t,this.onchange=e,this.hidden={materials:new Set,sets:new Set},this.place=rt("div"),this.fill()}fill(){Cn(this.place,...this.group("Materials","materials",this.model.materials),...this.model.sets.length?this.group("Element sets","sets",this.model.sets):[],rt("button",{type:"button",onclick:()=>this.showAll()},"Show all"))}group(t,e,n){let s=(r,o)=>{let a=yu(r,!this.hidden[e].has(o),c=>{this.hidden[e][c?"delete":"add"](o),this.apply()}),l=rt("button.link",{type:"button","aria-label":`only ${r}`,onclick:()=>this.only(e,o)},"only");return a.append(l),a};return[rt("fieldset",{},rt("legend",{},t),...n.map(s))]}showAll(){this.hidden={materials:new Set,sets:new Set},this.isOnly=null,this.fill(),this.apply()}only(t,e){this.showAll(),this.isOnly={kind:t,index:e},this.apply()}apply(){let{materials:t,sets:e}=this.hidden;this.model.show(n=>{if(t.has(n.material)||n.sets.some(o=>e.has(o)))return!1;if(!this.isOnly)return!0;let{kind:s,index:r}=this.isOnly;return s==="materials"?n.material===r:n.sets.includes(r)}),this.onchange()}};var je="u-",Cv="uplot",Rv=je+"hz",Pv=je+"vt",Iv=je+"title",Lv=je+"wrap",Dv=je+"under",Uv=je+"over",Nv=je+"axis",Ns=je+"off",Ov=je+"select",Fv=je+"cursor-x",Bv=je+"cursor-y",kv=je+"cursor-pt",zv=je+"legend",Vv=je+"live",Hv=je+"inline",Gv=je+"series",Wv=je+"marker",cd=je+"label",Xv=je+"value",po="width",mo="height",uo="top",hd="bottom",Pr="left",vh="right",Oh="#000",ud=Oh+"0",fd="mousemove",dd="mousedown",Mh="mouseup",pd="mouseenter",md="mouseleave",gd="dblclick",Yv="resize",qv="scroll",_d="change",Fa="dppxchange",Fh="--",Br=typeof window<"u",Th=Br?document:null,Lr=Br?window:null,$v=Br?navigator:null,_e,Da;function Ah(){let i=devicePixelRatio;_e!=i&&(_e=i,Da&&Rh(_d,Da,Ah),Da=matchMedia(`(min-resolution: ${_e-.001}dppx) and (max-resolution: ${_e+.001}dppx)`),Os(_d,Da,Ah),Lr.dispatchEvent(new CustomEvent(Fa)))}function On(i,t){if(t!=null){let e=i.classList;!e.contains(t)&&e.add(t)}}function Ch(i,t){let e=i.classList;e.contains(t)&&e.remove(t)}function De(i,t,e){i.style[t]=e+"px"}function ci(i,t,e,n){let s=Th.createElement(i);return t!=null&&On(s,t),e?.insertBefore(s,n),s}function qn(i,t){return ci("div",i,t)}var xd=new WeakMap;function xi(i,t,e,n,s){let r="translate("+t+"px,"+e+"px)",o=xd.get(i);r!=o&&(i.style.transform=r,xd.set(i,r),t<0||e<0||t>n||e>s?On(i,Ns):Ch(i,Ns))}var yd=new WeakMap;function vd(i,t,e){let n=t+e,s=yd.get(i);n!=s&&(yd.set(i,n),i.style.background=t,i.style.borderColor=e)}var Md=new WeakMap;function Sd(i,t,e,n){let s=t+""+e,r=Md.get(i);s!=r&&(Md.set(i,s),i.style.height=e+"px",i.style.width=t+"px",i.style.marginLeft=n?-t/2+"px":0,i.style.marginTop=n?-e/2+"px":0)}var Bh={passive:!0},Zv={...Bh,capture:!0};function Os(i,t,e,n){t.addEventListener(i,e,n?Zv:Bh)}function Rh(i,t,e,n){t.removeEventListener(i,e,Bh)}Br&&Ah();function hi(i,t,e,n){let s;e=e||0,n=n||t.length-1;let r=n<=2147483647;for(;n-e>1;)s=r?e+n>>1:Fn((e+n)/2),t[s]<i?e=s:n=s;return i-t[e]<=t[n]-i?e:n}function Dr(i,t,e,n){for(let s=n==1?t:e;s>=t&&s<=e;s+=n)if(i[s]!=null)return s;return-1}function Jv(i,t,e,n){let s=ce,r=-ce;if(n==1)s=i[t],r=i[e];else if(n==-1)s=i[e],r=i[t];else for(let o=t;o<=e;o++){let a=i[o];a!=null&&(a<s&&(s=a),a>r&&(r=a))}return[s,r]}function Kv(i,t,e){let n=ce,s=-ce;for(let r=t;r<=e;r++){let o=i[r];o!=null&&o>0&&(o<n&&(n=o),o>s&&(s=o))}return[n,s]}function za(i,t,e,n){let s=Ed(i),r=Ed(t);i==t&&(s==-1?(i*=e,t/=e):(i/=e,t*=e));let o=e==10?ki:Jd,a=s==1?Fn:$n,l=r==1?$n:Fn,c=a(o(Ke(i))),u=l(o(Ke(t))),f=Ur(e,c),h=Ur(e,u);return e==10&&(c<0&&(f=Re(f,-c)),u<0&&(h=Re(h,-u))),n||e==2?(i=f*s,t=h*r):(i=Qd(i,f),t=Va(t,h)),[i,t]}function kh(i,t,e,n){let s=za(i,t,e,n);return i==0&&(s[0]=0),t==0&&(s[1]=0),s}var zh=.1,bd={mode:3,pad:zh},_o={pad:0,soft:null,mode:0},jv={min:_o,max:_o};function Ba(i,t,e,n){return Ha(e)?wd(i,t,e):(_o.pad=e,_o.soft=n?0:null,_o.mode=n?3:0,wd(i,t,jv))}function pe(i,t){return i??t}function Qv(i,t,e){for(t=pe(t,0),e=pe(e,i.length-1);t<=e;){if(i[t]!=null)return!0;t++}return!1}function wd(i,t,e){let n=e.min,s=e.max,r=pe(n.pad,0),o=pe(s.pad,0),a=pe(n.hard,-ce),l=pe(s.hard,ce),c=pe(n.soft,ce),u=pe(s.soft,-ce),f=pe(n.mode,0),h=pe(s.mode,0),p=t-i,_=ki(p),x=dn(Ke(i),Ke(t)),m=ki(x),d=Ke(m-_);(p<1e-24||d>10)&&(p=0,(i==0||t==0)&&(p=1e-24,f==2&&c!=ce&&(r=0),h==2&&u!=-ce&&(o=0)));let A=p||x||1e3,w=ki(A),b=Ur(10,Fn(w)),D=A*(p==0?i==0?.1:1:r),L=Re(Qd(i-D,b/10),24),I=i>=c&&(f==1||f==3&&L<=c||f==2&&L>=c)?c:ce,U=dn(a,L<I&&i>=I?I:Zn(I,L)),E=A*(p==0?t==0?.1:1:o),M=Re(Va(t+E,b/10),24),C=t<=u&&(h==1||h==3&&M>=u||h==2&&M<=u)?u:-ce,W=Zn(l,M>C&&t<=C?C:dn(C,M));return U==W&&U==0&&(W=100),[U,W]}var tM=new Intl.NumberFormat(Br?$v.language:"en-US"),Vh=i=>tM.format(i),Bn=Math,Oa=Bn.PI,Ke=Bn.abs,Fn=Bn.floor,Je=Bn.round,$n=Bn.ceil,Zn=Bn.min,dn=Bn.max,Ur=Bn.pow,Ed=Bn.sign,ki=Bn.log10,Jd=Bn.log2,eM=(i,t=1)=>Bn.sinh(i)*t,Sh=(i,t=1)=>Bn.asinh(i/t),ce=1/0;function Td(i){return(ki((i^i>>31)-(i>>31))|0)+1}function Ph(i,t,e){return Zn(dn(i,t),e)}function le(i){return typeof i=="function"?i:()=>i}var nM=()=>{},Kd=i=>i,jd=(i,t)=>t,iM=i=>null,Ad=i=>!0,Cd=(i,t)=>i==t,sM=/\.\d*?(?=9{6,}|0{6,})/gm,Fs=i=>{if(ep(i)||os.has(i))return i;let t=`${i}`,e=t.match(sM);if(e==null)return i;let n=e[0].length-1;if(t.indexOf("e-")!=-1){let[s,r]=t.split("e");return+`${Fs(s)}e${r}`}return Re(i,n)};function Ds(i,t){return Fs(Re(Fs(i/t))*t)}function Va(i,t){return Fs($n(Fs(i/t))*t)}function Qd(i,t){return Fs(Fn(Fs(i/t))*t)}function Re(i,t=0){if(ep(i))return i;let e=10**t,n=i*e*(1+Number.EPSILON);return Je(n)/e}var os=new Map;function tp(i){return((""+i).split(".")[1]||"").length}function yo(i,t,e,n){let s=[],r=n.map(tp);for(let o=t;o<e;o++){let a=Ke(o),l=Re(Ur(i,o),a);for(let c=0;c<n.length;c++){let u=i==10?+`${n[c]}e${o}`:n[c]*l,f=(o>=0?0:a)+(o>=r[c]?0:r[c]),h=i==10?u:Re(u,f);s.push(h),os.set(h,f)}}return s}var xo={},Hh=[],Nr=[null,null],rs=Array.isArray,ep=Number.isInteger,rM=i=>i===void 0;function Rd(i){return typeof i=="string"}function Ha(i){let t=!1;if(i!=null){let e=i.constructor;t=e==null||e==Object}return t}function oM(i){return i!=null&&typeof i=="object"}var aM=Object.getPrototypeOf(Uint8Array),np="__proto__";function Or(i,t=Ha){let e;if(rs(i)){let n=i.find(s=>s!=null);if(rs(n)||t(n)){e=Array(i.length);for(let s=0;s<i.length;s++)e[s]=Or(i[s],t)}else e=i.slice()}else if(i instanceof aM)e=i.slice();else if(t(i)){e={};for(let n in i)n!=np&&(e[n]=Or(i[n],t))}else e=i;return e}function Ye(i){let t=arguments;for(let e=1;e<t.length;e++){let n=t[e];for(let s in n)s!=np&&(Ha(i[s])?Ye(i[s],Or(n[s])):i[s]=Or(n[s]))}return i}var lM=0,cM=1,hM=2;function uM(i,t,e){for(let n=0,s,r=-1;n<t.length;n++){let o=t[n];if(o>r){for(s=o-1;s>=0&&i[s]==null;)i[s--]=null;for(s=o+1;s<e&&i[s]==null;)i[r=s++]=null}}}function fM(i,t){if(mM(i)){let o=i[0].slice();for(let a=1;a<i.length;a++)o.push(...i[a].slice(1));return gM(o[0])||(o=pM(o)),o}let e=new Set;for(let o=0;o<i.length;o++){let l=i[o][0],c=l.length;for(let u=0;u<c;u++)e.add(l[u])}let n=[Array.from(e).sort((o,a)=>o-a)],s=n[0].length,r=new Map;for(let o=0;o<s;o++)r.set(n[0][o],o);for(let o=0;o<i.length;o++){let a=i[o],l=a[0];for(let c=1;c<a.length;c++){let u=a[c],f=Array(s).fill(void 0),h=t?t[o][c]:cM,p=[];for(let _=0;_<u.length;_++){let x=u[_],m=r.get(l[_]);x===null?h!=lM&&(f[m]=x,h==hM&&p.push(m)):f[m]=x}uM(f,p,s),n.push(f)}}return n}var dM=typeof queueMicrotask>"u"?i=>Promise.resolve().then(i):queueMicrotask;function pM(i){let t=i[0],e=t.length,n=Array(e);for(let r=0;r<n.length;r++)n[r]=r;n.sort((r,o)=>t[r]-t[o]);let s=[];for(let r=0;r<i.length;r++){let o=i[r],a=Array(e);for(let l=0;l<e;l++)a[l]=o[n[l]];s.push(a)}return s}function mM(i){let t=i[0][0],e=t.length;for(let n=1;n<i.length;n++){let s=i[n][0];if(s.length!=e)return!1;if(s!=t){for(let r=0;r<e;r++)if(s[r]!=t[r])return!1}}return!0}function gM(i,t=100){let e=i.length;if(e<=1)return!0;let n=0,s=e-1;for(;n<=s&&i[n]==null;)n++;for(;s>=n&&i[s]==null;)s--;if(s<=n)return!0;let r=dn(1,Fn((s-n+1)/t));for(let o=i[n],a=n+r;a<=s;a+=r){let l=i[a];if(l!=null){if(l<=o)return!1;o=l}}return!0}var ip=["January","February","March","April","May","June","July","August","September","October","November","December"],sp=["Sunday","Monday","Tuesday","Wednesday","Thursday","Friday","Saturday"];function rp(i){return i.slice(0,3)}var _M=sp.map(rp),xM=ip.map(rp),yM={MMMM:ip,MMM:xM,WWWW:sp,WWW:_M};function fo(i){return(i<10?"0":"")+i}function vM(i){return(i<10?"00":i<100?"0":"")+i}var MM={YYYY:i=>i.getFullYear(),YY:i=>(i.getFullYear()+"").slice(2),MMMM:(i,t)=>t.MMMM[i.getMonth()],MMM:(i,t)=>t.MMM[i.getMonth()],MM:i=>fo(i.getMonth()+1),M:i=>i.getMonth()+1,DD:i=>fo(i.getDate()),D:i=>i.getDate(),WWWW:(i,t)=>t.WWWW[i.getDay()],WWW:(i,t)=>t.WWW[i.getDay()],HH:i=>fo(i.getHours()),H:i=>i.getHours(),h:i=>{let t=i.getHours();return t==0?12:t>12?t-12:t},AA:i=>i.getHours()>=12?"PM":"AM",aa:i=>i.getHours()>=12?"pm":"am",a:i=>i.getHours()>=12?"p":"a",mm:i=>fo(i.getMinutes()),m:i=>i.getMinutes(),ss:i=>fo(i.getSeconds()),s:i=>i.getSeconds(),fff:i=>vM(i.getMilliseconds())};function Gh(i,t){t=t||yM;let e=[],n=/\{([a-z]+)\}|[^{]+/gi,s;for(;s=n.exec(i);)e.push(s[0][0]=="{"?MM[s[1]]:s[0]);return r=>{let o="";for(let a=0;a<e.length;a++)o+=typeof e[a]=="string"?e[a]:e[a](r,t);return o}}var SM=new Intl.DateTimeFormat().resolvedOptions().timeZone;function bM(i,t){let e;return t=="UTC"||t=="Etc/UTC"?e=new Date(+i+i.getTimezoneOffset()*6e4):t==SM?e=i:(e=new Date(i.toLocaleString("en-US",{timeZone:t})),e.setMilliseconds(i.getMilliseconds())),e}var op=i=>i%1==0,ka=[1,2,2.5,5],wM=yo(10,-32,0,ka),ap=yo(10,0,32,ka),EM=ap.filter(op),Us=wM.concat(ap),Wh=`
`,lp="{YYYY}",Pd=Wh+lp,cp="{M}/{D}",go=Wh+cp,Ua=go+"/{YY}",hp="{aa}",TM="{h}:{mm}",Ir=TM+hp,Id=Wh+Ir,Ld=":{ss}",ve=null;function up(i){let t=i*1e3,e=t*60,n=e*60,s=n*24,r=s*30,o=s*365,l=(i==1?yo(10,0,3,ka).filter(op):yo(10,-3,0,ka)).concat([t,t*5,t*10,t*15,t*30,e,e*5,e*10,e*15,e*30,n,n*2,n*3,n*4,n*6,n*8,n*12,s,s*2,s*3,s*4,s*5,s*6,s*7,s*8,s*9,s*10,s*15,r,r*2,r*3,r*4,r*6,o,o*2,o*5,o*10,o*25,o*50,o*100]),c=[[o,lp,ve,ve,ve,ve,ve,ve,1],[s*28,"{MMM}",Pd,ve,ve,ve,ve,ve,1],[s,cp,Pd,ve,ve,ve,ve,ve,1],[n,"{h}"+hp,Ua,ve,go,ve,ve,ve,1],[e,Ir,Ua,ve,go,ve,ve,ve,1],[t,Ld,Ua+" "+Ir,ve,go+" "+Ir,ve,Id,ve,1],[i,Ld+".{fff}",Ua+" "+Ir,ve,go+" "+Ir,ve,Id,ve,1]];function u(f){return(h,p,_,x,m,d)=>{let A=[],w=m>=o,b=m>=r&&m<o,D=f(_),L=Re(D*i,3),I=bh(D.getFullYear(),w?0:D.getMonth(),b||w?1:D.getDate()),U=Re(I*i,3);if(b||w){let E=b?m/r:0,M=w?m/o:0,C=L==U?L:Re(bh(I.getFullYear()+M,I.getMonth()+E,1)*i,3),W=new Date(Je(C/i)),V=W.getFullYear(),Y=W.getMonth();for(let j=0;C<=x;j++){let Z=bh(V+M*j,Y+E*j,1),et=Z-f(Re(Z*i,3));C=Re((+Z+et)*i,3),C<=x&&A.push(C)}}else{let E=m>=s?s:m,M=Fn(_)-Fn(L),C=U+M+Va(L-U,E);A.push(C);let W=f(C),V=W.getHours()+W.getMinutes()/e+W.getSeconds()/n,Y=m/n,j=h.axes[p]._space,Z=d/j;for(;C=Re(C+m,i==1?0:3),!(C>x);)if(Y>1){let et=Fn(Re(V+Y,6))%24,ot=f(C).getHours()-et;ot>1&&(ot=-1),C-=ot*n,V=(V+Y)%24;let mt=A[A.length-1];Re((C-mt)/m,3)*Z>=.7&&A.push(C)}else A.push(C)}return A}}return[l,c,u]}var[AM,CM,RM]=up(1),[PM,IM,LM]=up(.001);yo(2,-53,53,[1]);function Dd(i,t){return i.map(e=>e.map((n,s)=>s==0||s==8||n==null?n:t(s==1||e[8]==0?n:e[1]+n)))}function Ud(i,t){return(e,n,s,r,o)=>{let a=t.find(_=>o>=_[0])||t[t.length-1],l,c,u,f,h,p;return n.map(_=>{let x=i(_),m=x.getFullYear(),d=x.getMonth(),A=x.getDate(),w=x.getHours(),b=x.getMinutes(),D=x.getSeconds(),L=m!=l&&a[2]||d!=c&&a[3]||A!=u&&a[4]||w!=f&&a[5]||b!=h&&a[6]||D!=p&&a[7]||a[1];return l=m,c=d,u=A,f=w,h=b,p=D,L(x)})}}function DM(i,t){let e=Gh(t);return(n,s,r,o,a)=>s.map(l=>e(i(l)))}function bh(i,t,e){return new Date(i,t,e)}function Nd(i,t){return t(i)}var UM="{YYYY}-{MM}-{DD} {h}:{mm}{aa}";function Od(i,t){return(e,n,s,r)=>r==null?Fh:t(i(n))}function NM(i,t){let e=i.series[t];return e.width?e.stroke(i,t):e.points.width?e.points.stroke(i,t):null}function OM(i,t){return i.series[t].fill(i,t)}var FM={show:!0,live:!0,isolate:!1,mount:nM,markers:{show:!0,width:2,stroke:NM,fill:OM,dash:"solid"},idx:null,idxs:null,values:[]};function BM(i,t){let e=i.cursor.points,n=qn(),s=e.size(i,t);De(n,po,s),De(n,mo,s);let r=s/-2;De(n,"marginLeft",r),De(n,"marginTop",r);let o=e.width(i,t,s);return o&&De(n,"borderWidth",o),n}function kM(i,t){let e=i.series[t].points;return e._fill||e._stroke}function zM(i,t){let e=i.series[t].points;return e._stroke||e._fill}function VM(i,t){return i.series[t].points.size}var wh=[0,0];function HM(i,t,e){return wh[0]=t,wh[1]=e,wh}function Na(i,t,e,n=!0){return s=>{s.button==0&&(!n||s.target==t)&&e(s)}}function Eh(i,t,e,n=!0){return s=>{(!n||s.target==t)&&e(s)}}var GM={show:!0,x:!0,y:!0,lock:!1,move:HM,points:{one:!1,show:BM,size:VM,width:0,stroke:zM,fill:kM},bind:{mousedown:Na,mouseup:Na,click:Na,dblclick:Na,mousemove:Eh,mouseleave:Eh,mouseenter:Eh},drag:{setScale:!0,x:!0,y:!1,dist:0,uni:null,click:(i,t)=>{t.stopPropagation(),t.stopImmediatePropagation()},_x:!1,_y:!1},focus:{dist:(i,t,e,n,s)=>n-s,prox:-1,bias:0},hover:{skip:[void 0],prox:null,bias:0},left:-10,top:-10,idx:null,dataIdx:null,idxs:null,event:null},fp={show:!0,stroke:"rgba(0,0,0,0.07)",width:2},Xh=Ye({},fp,{filter:jd}),dp=Ye({},Xh,{size:10}),pp=Ye({},fp,{show:!1}),Yh='12px system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", Arial, "Noto Sans", sans-serif, "Apple Color Emoji", "Segoe UI Emoji", "Segoe UI Symbol", "Noto Color Emoji"',mp="bold "+Yh,gp=1.5,Fd={show:!0,scale:"x",stroke:Oh,space:50,gap:5,size:50,labelGap:0,labelSize:30,labelFont:mp,side:2,grid:Xh,ticks:dp,border:pp,font:Yh,lineGap:gp,rotate:0},WM="Value",XM="Time",Bd={show:!0,scale:"x",auto:!1,sorted:1,min:ce,max:-ce,idxs:[]};function YM(i,t,e,n,s){return t.map(r=>r==null?"":Vh(r))}function qM(i,t,e,n,s,r,o){let a=[],l=os.get(s)||0;e=o?e:Re(Va(e,s),l);for(let c=e;c<=n;c=Re(c+s,l))a.push(Object.is(c,-0)?0:c);return a}function Ih(i,t,e,n,s,r,o){let a=[],l=i.scales[i.axes[t].scale].log,c=l==10?ki:Jd,u=Fn(c(e));s=Ur(l,u),l==10&&(s=Us[hi(s,Us)]);let f=e,h=s*l;l==10&&(h=Us[hi(h,Us)]);do a.push(f),f=f+s,l==10&&!os.has(f)&&(f=Re(f,os.get(s))),f>=h&&(s=f,h=s*l,l==10&&(h=Us[hi(h,Us)]));while(f<=n);return a}function $M(i,t,e,n,s,r,o){let l=i.scales[i.axes[t].scale].asinh,c=n>l?Ih(i,t,dn(l,e),n,s):[l],u=n>=0&&e<=0?[0]:[];return(e<-l?Ih(i,t,dn(l,-n),-e,s):[l]).reverse().map(h=>-h).concat(u,c)}var _p=/./,ZM=/[12357]/,JM=/[125]/,kd=/1/,Lh=(i,t,e,n)=>i.map((s,r)=>t==4&&s==0||r%n==0&&e.test(s.toExponential()[s<0?1:0])?s:null);function KM(i,t,e,n,s){let r=i.axes[e],o=r.scale,a=i.scales[o],l=i.valToPos,c=r._space,u=l(10,o),f=l(9,o)-u>=c?_p:l(7,o)-u>=c?ZM:l(5,o)-u>=c?JM:kd;if(f==kd){let h=Ke(l(1,o)-u);if(h<c)return Lh(t.slice().reverse(),a.distr,f,$n(c/h)).reverse()}return Lh(t,a.distr,f,1)}function jM(i,t,e,n,s){let r=i.axes[e],o=r.scale,a=r._space,l=i.valToPos,c=Ke(l(1,o)-l(2,o));return c<a?Lh(t.slice().reverse(),3,_p,$n(a/c)).reverse():t}function QM(i,t,e,n){return n==null?Fh:t==null?"":Vh(t)}var zd={show:!0,scale:"y",stroke:Oh,space:30,gap:5,size:50,labelGap:0,labelSize:30,labelFont:mp,side:3,grid:Xh,ticks:dp,border:pp,font:Yh,lineGap:gp,rotate:0};function tS(i,t){let e=3+(i||1)*2;return Re(e*t,3)}function eS(i,t){let{scale:e,idxs:n}=i.series[0],s=i._data[0],r=i.valToPos(s[n[0]],e,!0),o=i.valToPos(s[n[1]],e,!0),a=Ke(o-r),l=i.series[t],c=a/(l.points.space*_e);return n[1]-n[0]<=c}var Vd={scale:null,auto:!0,sorted:0,min:ce,max:-ce},xp=(i,t,e,n,s)=>s,Hd={show:!0,auto:!0,sorted:0,gaps:xp,alpha:1,facets:[Ye({},Vd,{scale:"x"}),Ye({},Vd,{scale:"y"})]},Gd={scale:"y",auto:!0,sorted:0,show:!0,spanGaps:!1,gaps:xp,alpha:1,points:{show:eS,filter:null},values:null,min:ce,max:-ce,idxs:[],path:null,clip:null};function nS(i,t,e,n,s){return e/10}var yp={time:!0,auto:!0,distr:1,log:10,asinh:1,min:null,max:null,dir:1,ori:0},iS=Ye({},yp,{time:!1,ori:1}),Wd={};function vp(i,t){let e=Wd[i];return e||(e={key:i,plots:[],sub(n){e.plots.push(n)},unsub(n){e.plots=e.plots.filter(s=>s!=n)},pub(n,s,r,o,a,l,c){for(let u=0;u<e.plots.length;u++)e.plots[u]!=s&&e.plots[u].pub(n,s,r,o,a,l,c)}},i!=null&&(Wd[i]=e)),e}var Fr=1,Dh=2;function Bs(i,t,e){let n=i.mode,s=i.series[t],r=n==2?i._data[t]:i._data,o=i.scales,a=i.bbox,l=r[0],c=n==2?r[1]:r[t],u=n==2?o[s.facets[0].scale]:o[i.series[0].scale],f=n==2?o[s.facets[1].scale]:o[s.scale],h=a.left,p=a.top,_=a.width,x=a.height,m=i.valToPosH,d=i.valToPosV;return u.ori==0?e(s,l,c,u,f,m,d,h,p,_,x,Wa,kr,Ya,Sp,wp):e(s,l,c,u,f,d,m,p,h,x,_,Xa,zr,Zh,bp,Ep)}function qh(i,t){let e=0,n=0,s=pe(i.bands,Hh);for(let r=0;r<s.length;r++){let o=s[r];o.series[0]==t?e=o.dir:o.series[1]==t&&(o.dir==1?n|=1:n|=2)}return[e,n==1?-1:n==2?1:n==3?2:0]}function sS(i,t,e,n,s){let r=i.mode,o=i.series[t],a=r==2?o.facets[1].scale:o.scale,l=i.scales[a];return s==-1?l.min:s==1?l.max:l.distr==3?l.dir==1?l.min:l.max:0}function zi(i,t,e,n,s,r){return Bs(i,t,(o,a,l,c,u,f,h,p,_,x,m)=>{let d=o.pxRound,A=c.dir*(c.ori==0?1:-1),w=c.ori==0?kr:zr,b,D;A==1?(b=e,D=n):(b=n,D=e);let L=d(f(a[b],c,x,p)),I=d(h(l[b],u,m,_)),U=d(f(a[D],c,x,p)),E=d(h(r==1?u.max:u.min,u,m,_)),M=new Path2D(s);return w(M,U,E),w(M,L,E),w(M,L,I),M})}function Ga(i,t,e,n,s,r){let o=null;if(i.length>0){o=new Path2D;let a=t==0?Ya:Zh,l=e;for(let f=0;f<i.length;f++){let h=i[f];if(h[1]>h[0]){let p=h[0]-l;p>0&&a(o,l,n,p,n+r),l=h[1]}}let c=e+s-l,u=10;c>0&&a(o,l,n-u/2,c,n+r+u)}return o}function rS(i,t,e){let n=i[i.length-1];n&&n[0]==t?n[1]=e:i.push([t,e])}function $h(i,t,e,n,s,r,o){let a=[],l=i.length;for(let c=s==1?e:n;c>=e&&c<=n;c+=s)if(t[c]===null){let f=c,h=c;if(s==1)for(;++c<=n&&t[c]===null;)h=c;else for(;--c>=e&&t[c]===null;)h=c;let p=r(i[f]),_=h==f?p:r(i[h]),x=f-s;p=o<=0&&x>=0&&x<l?r(i[x]):p;let d=h+s;_=o>=0&&d>=0&&d<l?r(i[d]):_,_>=p&&a.push([p,_])}return a}function Xd(i){return i==0?Kd:i==1?Je:t=>Ds(t,i)}function Mp(i){let t=i==0?Wa:Xa,e=i==0?(s,r,o,a,l,c)=>{s.arcTo(r,o,a,l,c)}:(s,r,o,a,l,c)=>{s.arcTo(o,r,l,a,c)},n=i==0?(s,r,o,a,l)=>{s.rect(r,o,a,l)}:(s,r,o,a,l)=>{s.rect(o,r,l,a)};return(s,r,o,a,l,c=0,u=0)=>{c==0&&u==0?n(s,r,o,a,l):(c=Zn(c,a/2,l/2),u=Zn(u,a/2,l/2),t(s,r+c,o),e(s,r+a,o,r+a,o+l,c),e(s,r+a,o+l,r,o+l,u),e(s,r,o+l,r,o,u),e(s,r,o,r+a,o,c),s.closePath())}}var Wa=(i,t,e)=>{i.moveTo(t,e)},Xa=(i,t,e)=>{i.moveTo(e,t)},kr=(i,t,e)=>{i.lineTo(t,e)},zr=(i,t,e)=>{i.lineTo(e,t)},Ya=Mp(0),Zh=Mp(1),Sp=(i,t,e,n,s,r)=>{i.arc(t,e,n,s,r)},bp=(i,t,e,n,s,r)=>{i.arc(e,t,n,s,r)},wp=(i,t,e,n,s,r,o)=>{i.bezierCurveTo(t,e,n,s,r,o)},Ep=(i,t,e,n,s,r,o)=>{i.bezierCurveTo(e,t,s,n,o,r)};function Tp(i){return(t,e,n,s,r)=>Bs(t,e,(o,a,l,c,u,f,h,p,_,x,m)=>{let{pxRound:d,points:A}=o,w,b;c.ori==0?(w=Wa,b=Sp):(w=Xa,b=bp);let D=Re(A.width*_e,3),L=(A.size-A.width)/2*_e,I=Re(L*2,3),U=new Path2D,E=new Path2D,{left:M,top:C,width:W,height:V}=t.bbox;Ya(E,M-I,C-I,W+I*2,V+I*2);let Y=j=>{if(l[j]!=null){let Z=d(f(a[j],c,x,p)),et=d(h(l[j],u,m,_));w(U,Z+L,et),b(U,Z,et,L,0,Oa*2)}};if(r)r.forEach(Y);else for(let j=n;j<=s;j++)Y(j);return{stroke:D>0?U:null,fill:U,clip:E,flags:Fr|Dh}})}function Ap(i){return(t,e,n,s,r,o)=>{n!=s&&(r!=n&&o!=n&&i(t,e,n),r!=s&&o!=s&&i(t,e,s),i(t,e,o))}}var oS=Ap(kr),aS=Ap(zr);function Cp(i){let t=pe(i?.alignGaps,0);return(e,n,s,r)=>Bs(e,n,(o,a,l,c,u,f,h,p,_,x,m)=>{let d=o.pxRound,A=dt=>d(f(dt,c,x,p)),w=dt=>d(h(dt,u,m,_)),b,D;c.ori==0?(b=kr,D=oS):(b=zr,D=aS);let L=c.dir*(c.ori==0?1:-1),I={stroke:new Path2D,fill:null,clip:null,band:null,gaps:null,flags:Fr},U=I.stroke,E=ce,M=-ce,C,W,V,Y=A(a[L==1?s:r]),j=Dr(l,s,r,1*L),Z=Dr(l,s,r,-1*L),et=A(a[j]),K=A(a[Z]),ht=!1;for(let dt=L==1?s:r;dt>=s&&dt<=r;dt+=L){let Gt=A(a[dt]),$=l[dt];Gt==Y?$!=null?(W=w($),E==ce&&(b(U,Gt,W),C=W),E=Zn(W,E),M=dn(W,M)):$===null&&(ht=!0):(E!=ce&&(D(U,Y,E,M,C,W),V=Y),$!=null?(W=w($),b(U,Gt,W),E=M=C=W):(E=ce,M=-ce,$===null&&(ht=!0)),Y=Gt)}E!=ce&&E!=M&&V!=Y&&D(U,Y,E,M,C,W);let[ot,mt]=qh(e,n);if(o.fill!=null||ot!=0){let dt=I.fill=new Path2D(U),Gt=o.fillTo(e,n,o.min,o.max,ot),$=w(Gt);b(dt,K,$),b(dt,et,$)}if(!o.spanGaps){let dt=[];ht&&dt.push(...$h(a,l,s,r,L,A,t)),I.gaps=dt=o.gaps(e,n,s,r,dt),I.clip=Ga(dt,c.ori,p,_,x,m)}return mt!=0&&(I.band=mt==2?[zi(e,n,s,r,U,-1),zi(e,n,s,r,U,1)]:zi(e,n,s,r,U,mt)),I})}function lS(i){let t=pe(i.align,1),e=pe(i.ascDesc,!1),n=pe(i.alignGaps,0),s=pe(i.extend,!1);return(r,o,a,l)=>Bs(r,o,(c,u,f,h,p,_,x,m,d,A,w)=>{let b=c.pxRound,{left:D,width:L}=r.bbox,I=ot=>b(_(ot,h,A,m)),U=ot=>b(x(ot,p,w,d)),E=h.ori==0?kr:zr,M={stroke:new Path2D,fill:null,clip:null,band:null,gaps:null,flags:Fr},C=M.stroke,W=h.dir*(h.ori==0?1:-1);a=Dr(f,a,l,1),l=Dr(f,a,l,-1);let V=U(f[W==1?a:l]),Y=I(u[W==1?a:l]),j=Y,Z=Y;s&&t==-1&&(Z=D,E(C,Z,V)),E(C,Y,V);for(let ot=W==1?a:l;ot>=a&&ot<=l;ot+=W){let mt=f[ot];if(mt==null)continue;let dt=I(u[ot]),Gt=U(mt);t==1?E(C,dt,V):E(C,j,Gt),E(C,dt,Gt),V=Gt,j=dt}let et=j;s&&t==1&&(et=D+L,E(C,et,V));let[K,ht]=qh(r,o);if(c.fill!=null||K!=0){let ot=M.fill=new Path2D(C),mt=c.fillTo(r,o,c.min,c.max,K),dt=U(mt);E(ot,et,dt),E(ot,Z,dt)}if(!c.spanGaps){let ot=[];ot.push(...$h(u,f,a,l,W,I,n));let mt=c.width*_e/2,dt=e||t==1?mt:-mt,Gt=e||t==-1?-mt:mt;ot.forEach($=>{$[0]+=dt,$[1]+=Gt}),M.gaps=ot=c.gaps(r,o,a,l,ot),M.clip=Ga(ot,h.ori,m,d,A,w)}return ht!=0&&(M.band=ht==2?[zi(r,o,a,l,C,-1),zi(r,o,a,l,C,1)]:zi(r,o,a,l,C,ht)),M})}function Yd(i,t,e,n,s,r,o=ce){if(i.length>1){let a=null;for(let l=0,c=1/0;l<i.length;l++)if(t[l]!==void 0){if(a!=null){let u=Ke(i[l]-i[a]);u<c&&(c=u,o=Ke(e(i[l],n,s,r)-e(i[a],n,s,r)))}a=l}}return o}function cS(i){i=i||xo;let t=pe(i.size,[.6,ce,1]),e=i.align||0,n=i.gap||0,s=i.radius;s=s==null?[0,0]:typeof s=="number"?[s,0]:s;let r=le(s),o=1-t[0],a=pe(t[1],ce),l=pe(t[2],1),c=pe(i.disp,xo),u=pe(i.each,p=>{}),{fill:f,stroke:h}=c;return(p,_,x,m)=>Bs(p,_,(d,A,w,b,D,L,I,U,E,M,C)=>{let W=d.pxRound,V=e,Y=n*_e,j=a*_e,Z=l*_e,et,K;b.ori==0?[et,K]=r(p,_):[K,et]=r(p,_);let ht=b.dir*(b.ori==0?1:-1),ot=b.ori==0?Ya:Zh,mt=b.ori==0?u:(J,tt,Pt,gt,vt,Xt,at)=>{u(J,tt,Pt,vt,gt,at,Xt)},dt=pe(p.bands,Hh).find(J=>J.series[0]==_),Gt=dt!=null?dt.dir:0,$=d.fillTo(p,_,d.min,d.max,Gt),ct=W(I($,D,C,E)),It,ut,Dt,Ht=M,zt=W(d.width*_e),se=!1,jt=null,Se=null,z=null,qe=null;f!=null&&(zt==0||h!=null)&&(se=!0,jt=f.values(p,_,x,m),Se=new Map,new Set(jt).forEach(J=>{J!=null&&Se.set(J,new Path2D)}),zt>0&&(z=h.values(p,_,x,m),qe=new Map,new Set(z).forEach(J=>{J!=null&&qe.set(J,new Path2D)})));let{x0:ee,size:Zt}=c;if(ee!=null&&Zt!=null){V=1,A=ee.values(p,_,x,m),ee.unit==2&&(A=A.map(Pt=>p.posToVal(U+Pt*M,b.key,!0)));let J=Zt.values(p,_,x,m);Zt.unit==2?ut=J[0]*M:ut=L(J[0],b,M,U)-L(0,b,M,U),Ht=Yd(A,w,L,b,M,U,Ht),Dt=Ht-ut+Y}else Ht=Yd(A,w,L,b,M,U,Ht),Dt=Ht*o+Y,ut=Ht-Dt;Dt<1&&(Dt=0),zt>=ut/2&&(zt=0),Dt<5&&(W=Kd);let Ut=Dt>0,xe=Ht-Dt-(Ut?zt:0);ut=W(Ph(xe,Z,j)),It=(V==0?ut/2:V==ht?0:ut)-V*ht*((V==0?Y/2:0)+(Ut?zt/2:0));let Ft={stroke:null,fill:null,clip:null,band:null,gaps:null,flags:0},T=se?null:new Path2D,y=null;if(dt!=null)y=p.data[dt.series[1]];else{let{y0:J,y1:tt}=c;J!=null&&tt!=null&&(w=tt.values(p,_,x,m),y=J.values(p,_,x,m))}let B=et*ut,nt=K*ut;for(let J=ht==1?x:m;J>=x&&J<=m;J+=ht){let tt=w[J];if(tt==null)continue;if(y!=null){let Vt=y[J]??0;if(tt-Vt==0)continue;ct=I(Vt,D,C,E)}let Pt=b.distr!=2||c!=null?A[J]:J,gt=L(Pt,b,M,U),vt=I(pe(tt,$),D,C,E),Xt=W(gt-It),at=W(dn(vt,ct)),_t=W(Zn(vt,ct)),Bt=at-_t;if(tt!=null){let Vt=tt<0?nt:B,St=tt<0?B:nt;se?(zt>0&&z[J]!=null&&ot(qe.get(z[J]),Xt,_t+Fn(zt/2),ut,dn(0,Bt-zt),Vt,St),jt[J]!=null&&ot(Se.get(jt[J]),Xt,_t+Fn(zt/2),ut,dn(0,Bt-zt),Vt,St)):ot(T,Xt,_t+Fn(zt/2),ut,dn(0,Bt-zt),Vt,St),mt(p,_,J,Xt-zt/2,_t,ut+zt,Bt)}}return zt>0?Ft.stroke=se?qe:T:se||(Ft._fill=d.width==0?d._fill:d._stroke??d._fill,Ft.width=0),Ft.fill=se?Se:T,Ft})}function hS(i,t){let e=pe(t?.alignGaps,0);return(n,s,r,o)=>Bs(n,s,(a,l,c,u,f,h,p,_,x,m,d)=>{let A=a.pxRound,w=et=>A(h(et,u,m,_)),b=et=>A(p(et,f,d,x)),D,L,I;u.ori==0?(D=Wa,I=kr,L=wp):(D=Xa,I=zr,L=Ep);let U=u.dir*(u.ori==0?1:-1);r=Dr(c,r,o,1),o=Dr(c,r,o,-1);let E=w(l[U==1?r:o]),M=E,C=[],W=[];for(let et=U==1?r:o;et>=r&&et<=o;et+=U)if(c[et]!=null){let ht=l[et],ot=w(ht);C.push(M=ot),W.push(b(c[et]))}let V={stroke:i(C,W,D,I,L,A),fill:null,clip:null,band:null,gaps:null,flags:Fr},Y=V.stroke,[j,Z]=qh(n,s);if(a.fill!=null||j!=0){let et=V.fill=new Path2D(Y),K=a.fillTo(n,s,a.min,a.max,j),ht=b(K);I(et,M,ht),I(et,E,ht)}if(!a.spanGaps){let et=[];et.push(...$h(l,c,r,o,U,w,e)),V.gaps=et=a.gaps(n,s,r,o,et),V.clip=Ga(et,u.ori,_,x,m,d)}return Z!=0&&(V.band=Z==2?[zi(n,s,r,o,Y,-1),zi(n,s,r,o,Y,1)]:zi(n,s,r,o,Y,Z)),V})}function uS(i){return hS(fS,i)}function fS(i,t,e,n,s,r){let o=i.length;if(o<2)return null;let a=new Path2D;if(e(a,i[0],t[0]),o==2)n(a,i[1],t[1]);else{let l=Array(o),c=Array(o-1),u=Array(o-1),f=Array(o-1);for(let h=0;h<o-1;h++)u[h]=t[h+1]-t[h],f[h]=i[h+1]-i[h],c[h]=u[h]/f[h];l[0]=c[0];for(let h=1;h<o-1;h++)c[h]===0||c[h-1]===0||c[h-1]>0!=c[h]>0?l[h]=0:(l[h]=3*(f[h-1]+f[h])/((2*f[h]+f[h-1])/c[h-1]+(f[h]+2*f[h-1])/c[h]),isFinite(l[h])||(l[h]=0));l[o-1]=c[o-2];for(let h=0;h<o-1;h++)s(a,i[h]+f[h]/3,t[h]+l[h]*f[h]/3,i[h+1]-f[h]/3,t[h+1]-l[h+1]*f[h]/3,i[h+1],t[h+1])}return a}var Uh=new Set;function qd(){for(let i of Uh)i.syncRect(!0)}Br&&(Os(Yv,Lr,qd),Os(qv,Lr,qd,!0),Os(Fa,Lr,()=>{cn.pxRatio=_e}));var dS=Cp(),pS=Tp();function $d(i,t,e,n){return(n?[i[0],i[1]].concat(i.slice(2)):[i[0]].concat(i.slice(1))).map((r,o)=>Nh(r,o,t,e))}function mS(i,t){return i.map((e,n)=>n==0?{}:Ye({},t,e))}function Nh(i,t,e,n){return Ye({},t==0?e:n,i)}function Rp(i,t,e){return t==null?Nr:[t,e]}var gS=Rp;function _S(i,t,e){return t==null?Nr:Ba(t,e,zh,!0)}function Pp(i,t,e,n){return t==null?Nr:za(t,e,i.scales[n].log,!1)}var xS=Pp;function Ip(i,t,e,n){return t==null?Nr:kh(t,e,i.scales[n].log,!1)}var yS=Ip;function vS(i,t,e,n,s){let r=dn(Td(i),Td(t)),o=t-i,a=hi(s/n*o,e);do{let l=e[a],c=n*l/o;if(c>=s&&r+(l<5?os.get(l):0)<=17)return[l,c]}while(++a<e.length);return[0,0]}function Zd(i){let t,e;return i=i.replace(/(\d+)px/,(n,s)=>(t=Je((e=+s)*_e))+"px"),[i,t,e]}function MS(i){i.show&&[i.font,i.labelFont].forEach(t=>{let e=Re(t[2]*_e,1);t[0]=t[0].replace(/[0-9.]+px/,e+"px"),t[1]=e})}function cn(i,t,e){let n={mode:pe(i.mode,1)},s=n.mode;function r(g,v){return((v.distr==3?ki(g>0?g:v.clamp(n,g,v.min,v.max,v.key)):v.distr==4?Sh(g,v.asinh):v.distr==100?v.fwd(g):g)-v._min)/(v._max-v._min)}function o(g,v,R,P){let F=r(g,v);return P+R*(v.dir==-1?1-F:F)}function a(g,v,R,P){let F=r(g,v);return P+R*(v.dir==-1?F:1-F)}function l(g,v,R,P){return v.ori==0?o(g,v,R,P):a(g,v,R,P)}n.valToPosH=o,n.valToPosV=a;let c=!1;n.status=0;let u=n.root=qn(Cv);if(i.id!=null&&(u.id=i.id),On(u,i.class),i.title){let g=qn(Iv,u);g.textContent=i.title}let f=ci("canvas"),h=n.ctx=f.getContext("2d"),p=qn(Lv,u);Os("click",p,g=>{g.target===x&&(Pe!=Ws||Ne!=Xs)&&ln.click(n,g)},!0);let _=n.under=qn(Dv,p);p.appendChild(f);let x=n.over=qn(Uv,p);i=Or(i);let m=+pe(i.pxAlign,1),d=Xd(m);(i.plugins||[]).forEach(g=>{g.opts&&(i=g.opts(n,i)||i)});let A=i.ms||.001,w=n.series=s==1?$d(i.series||[],Bd,Gd,!1):mS(i.series||[null],Hd),b=n.axes=$d(i.axes||[],Fd,zd,!0),D=n.scales={},L=n.bands=i.bands||[];L.forEach(g=>{g.fill=le(g.fill||null),g.dir=pe(g.dir,-1)});let I=s==2?w[1].facets[0].scale:w[0].scale,U={axes:Wp,series:Ae},E=(i.drawOrder||["axes","series"]).map(g=>U[g]);function M(g){let v=D[g];if(v==null){let R=(i.scales||xo)[g]||xo;if(R.from!=null)M(R.from),D[g]=Ye({},D[R.from],R,{key:g});else{v=D[g]=Ye({},g==I?yp:iS,R),v.key=g;let P=v.time,F=v.range,X=rs(F);if((g!=I||s==2&&!P)&&(X&&(F[0]==null||F[1]==null)&&(F={min:F[0]==null?bd:{mode:1,hard:F[0],soft:F[0]},max:F[1]==null?bd:{mode:1,hard:F[1],soft:F[1]}},X=!1),!X&&Ha(F))){let it=F;F=(lt,pt,Et)=>pt==null?Nr:Ba(pt,Et,it)}v.range=le(F||(P?gS:g==I?v.distr==3?xS:v.distr==4?yS:Rp:v.distr==3?Pp:v.distr==4?Ip:_S)),v.auto=le(X?!1:v.auto),v.clamp=le(v.clamp||nS),v._min=v._max=null}}}M("x"),M("y"),s==1&&w.forEach(g=>{M(g.scale)}),b.forEach(g=>{M(g.scale)});for(let g in i.scales)M(g);let C=D[I],W=C.distr,V,Y;C.ori==0?(On(u,Rv),V=o,Y=a):(On(u,Pv),V=a,Y=o);let j={};for(let g in D){let v=D[g];(v.min!=null||v.max!=null)&&(j[g]={min:v.min,max:v.max},v.min=v.max=null)}let Z=i.tzDate||(g=>new Date(Je(g/A))),et=i.fmtDate||Gh,K=A==1?RM(Z):LM(Z),ht=Ud(Z,Dd(A==1?CM:IM,et)),ot=Od(Z,Nd(UM,et)),mt=[],dt=n.legend=Ye({},FM,i.legend),Gt=dt.show,$=dt.markers;dt.idxs=mt,$.width=le($.width),$.dash=le($.dash),$.stroke=le($.stroke),$.fill=le($.fill);let ct,It,ut,Dt=[],Ht=[],zt,se=!1,jt={};if(dt.live){let g=w[1]?w[1].values:null;se=g!=null,zt=se?g(n,1,0):{_:0};for(let v in zt)jt[v]=Fh}if(Gt)if(ct=ci("table",zv,u),ut=ci("tbody",null,ct),dt.mount(n,ct),se){It=ci("thead",null,ct,ut);let g=ci("tr",null,It);ci("th",null,g);for(var Se in zt)ci("th",cd,g).textContent=Se}else On(ct,Hv),dt.live&&On(ct,Vv);let z={show:!0},qe={show:!1};function ee(g,v){if(v==0&&(se||!dt.live||s==2))return Nr;let R=[],P=ci("tr",Gv,ut,ut.childNodes[v]);On(P,g.class),g.show||On(P,Ns);let F=ci("th",null,P);if($.show){let lt=qn(Wv,F);if(v>0){let pt=$.width(n,v);pt&&(lt.style.border=pt+"px "+$.dash(n,v)+" "+$.stroke(n,v)),lt.style.background=$.fill(n,v)}}let X=qn(cd,F);X.textContent=g.label,v>0&&($.show||(X.style.color=g.width>0?$.stroke(n,v):$.fill(n,v)),Ut("click",F,lt=>{if(At._lock)return;re(lt);let pt=w.indexOf(g);if((lt.ctrlKey||lt.metaKey)!=dt.isolate){let Et=w.some((Tt,Rt)=>Rt>0&&Rt!=pt&&Tt.show);w.forEach((Tt,Rt)=>{Rt>0&&pi(Rt,Et?Rt==pt?z:qe:z,!0,Ve.setSeries)})}else pi(pt,{show:!g.show},!0,Ve.setSeries)},!1),yi&&Ut(pd,F,lt=>{At._lock||(re(lt),pi(w.indexOf(g),qs,!0,Ve.setSeries))},!1));for(var it in zt){let lt=ci("td",Xv,P);lt.textContent="--",R.push(lt)}return[P,R]}let Zt=new Map;function Ut(g,v,R,P=!0){let F=Zt.get(v)||{},X=At.bind[g](n,v,R,P);X&&(Os(g,v,F[g]=X),Zt.set(v,F))}function xe(g,v,R){let P=Zt.get(v)||{};for(let F in P)(g==null||F==g)&&(Rh(F,v,P[F]),delete P[F]);g==null&&Zt.delete(v)}let Ft=0,T=0,y=0,B=0,nt=0,J=0,tt=nt,Pt=J,gt=y,vt=B,Xt=0,at=0,_t=0,Bt=0;n.bbox={};let Vt=!1,St=!1,Qt=!1,Yt=!1,me=!1,N=!1;function xt(g,v,R){(R||g!=n.width||v!=n.height)&&Q(g,v),zs(!1),Qt=!0,St=!0,Vs()}function Q(g,v){n.width=Ft=y=g,n.height=T=B=v,nt=J=0,Jt(),Ue();let R=n.bbox;Xt=R.left=Ds(nt*_e,.5),at=R.top=Ds(J*_e,.5),_t=R.width=Ds(y*_e,.5),Bt=R.height=Ds(B*_e,.5)}let st=3;function wt(){let g=!1,v=0;for(;!g;){v++;let R=Hp(v),P=Gp(v);g=v==st||R&&P,g||(Q(n.width,n.height),St=!0)}}function bt({width:g,height:v}){xt(g,v)}n.setSize=bt;function Jt(){let g=!1,v=!1,R=!1,P=!1;b.forEach((F,X)=>{if(F.show&&F._show){let{side:it,_size:lt}=F,pt=it%2,Et=F.label!=null?F.labelSize:0,Tt=lt+Et;Tt>0&&(pt?(y-=Tt,it==3?(nt+=Tt,P=!0):R=!0):(B-=Tt,it==0?(J+=Tt,g=!0):v=!0))}}),fi[0]=g,fi[1]=R,fi[2]=v,fi[3]=P,y-=di[1]+di[3],nt+=di[3],B-=di[2]+di[0],J+=di[0]}function Ue(){let g=nt+y,v=J+B,R=nt,P=J;function F(X,it){switch(X){case 1:return g+=it,g-it;case 2:return v+=it,v-it;case 3:return R-=it,R+it;case 0:return P-=it,P+it}}b.forEach((X,it)=>{if(X.show&&X._show){let lt=X.side;X._pos=F(lt,X._size),X.label!=null&&(X._lpos=F(lt,X.labelSize))}})}let At=n.cursor=Ye({},GM,{drag:{y:s==2}},i.cursor);if(At.dataIdx==null){let g=At.hover,v=g.skip=new Set(g.skip??[]);v.add(void 0);let R=g.prox=le(g.prox),P=g.bias??=0;At.dataIdx=(F,X,it,lt)=>{if(X==0)return it;let pt=it,Et=R(F,X,it,lt)??ce,Tt=Et>=0&&Et<ce,Rt=C.ori==0?y:B,$t=At.left,Ce=t[0],he=t[X];if(v.has(he[it])){pt=null;let oe=null,Kt=null,kt;if(P==0||P==-1)for(kt=it;oe==null&&kt-- >0;)v.has(he[kt])||(oe=kt);if(P==0||P==1)for(kt=it;Kt==null&&kt++<he.length;)v.has(he[kt])||(Kt=kt);if(oe!=null||Kt!=null)if(Tt){let we=oe==null?-1/0:V(Ce[oe],C,Rt,0),ke=Kt==null?1/0:V(Ce[Kt],C,Rt,0),Be=$t-we,Le=ke-$t;Be<=Le?Be<=Et&&(pt=oe):Le<=Et&&(pt=Kt)}else pt=Kt==null?oe:oe==null?Kt:it-oe<=Kt-it?oe:Kt}else Tt&&Ke($t-V(Ce[it],C,Rt,0))>Et&&(pt=null);return pt}}let re=g=>{At.event=g};At.idxs=mt,At._lock=!1;let be=At.points;be.show=le(be.show),be.size=le(be.size),be.stroke=le(be.stroke),be.width=le(be.width),be.fill=le(be.fill);let tn=n.focus=Ye({},i.focus||{alpha:.3},At.focus),yi=tn.prox>=0,vi=yi&&be.one,ze=[],ui=[],Mi=[];function Vr(g,v){let R=be.show(n,v);if(R)return On(R,kv),On(R,g.class),xi(R,-10,-10,y,B),x.insertBefore(R,ze[v]),R}function as(g,v){if(s==1||v>0){let R=s==1&&D[g.scale].time,P=g.value;g.value=R?Rd(P)?Od(Z,Nd(P,et)):P||ot:P||QM,g.label=g.label||(R?XM:WM)}if(vi||v>0){g.width=g.width==null?1:g.width,g.paths=g.paths||dS||iM,g.fillTo=le(g.fillTo||sS),g.pxAlign=+pe(g.pxAlign,m),g.pxRound=Xd(g.pxAlign),g.stroke=le(g.stroke||null),g.fill=le(g.fill||null),g._stroke=g._fill=g._paths=g._focus=null;let R=tS(dn(1,g.width),1),P=g.points=Ye({},{size:R,width:dn(1,R*.2),stroke:g.stroke,space:R*2,paths:pS,_stroke:null,_fill:null},g.points);P.show=le(P.show),P.filter=le(P.filter),P.fill=le(P.fill),P.stroke=le(P.stroke),P.paths=le(P.paths),P.pxAlign=g.pxAlign}if(Gt){let R=ee(g,v);Dt.splice(v,0,R[0]),Ht.splice(v,0,R[1]),dt.values.push(null)}if(At.show){mt.splice(v,0,null);let R=null;vi?v==0&&(R=Vr(g,v)):v>0&&(R=Vr(g,v)),ze.splice(v,0,R),ui.splice(v,0,0),Mi.splice(v,0,0)}rn("addSeries",v)}function vo(g,v){v=v??w.length,g=s==1?Nh(g,v,Bd,Gd):Nh(g,v,{},Hd),w.splice(v,0,g),as(w[v],v)}n.addSeries=vo;function ks(g){if(w.splice(g,1),Gt){dt.values.splice(g,1),Ht.splice(g,1);let v=Dt.splice(g,1)[0];xe(null,v.firstChild),v.remove()}At.show&&(mt.splice(g,1),ze.splice(g,1)[0].remove(),ui.splice(g,1),Mi.splice(g,1)),rn("delSeries",g)}n.delSeries=ks;let fi=[!1,!1,!1,!1];function Mo(g,v){if(g._show=g.show,g.show){let R=g.side%2,P=D[g.scale];P==null&&(g.scale=R?w[1].scale:I,P=D[g.scale]);let F=P.time;g.size=le(g.size),g.space=le(g.space),g.rotate=le(g.rotate),rs(g.incrs)&&g.incrs.forEach(it=>{!os.has(it)&&os.set(it,tp(it))}),g.incrs=le(g.incrs||(P.distr==2?EM:F?A==1?AM:PM:Us)),g.splits=le(g.splits||(F&&P.distr==1?K:P.distr==3?Ih:P.distr==4?$M:qM)),g.stroke=le(g.stroke),g.grid.stroke=le(g.grid.stroke),g.ticks.stroke=le(g.ticks.stroke),g.border.stroke=le(g.border.stroke);let X=g.values;g.values=rs(X)&&!rs(X[0])?le(X):F?rs(X)?Ud(Z,Dd(X,et)):Rd(X)?DM(Z,X):X||ht:X||YM,g.filter=le(g.filter||(P.distr>=3&&P.log==10?KM:P.distr==3&&P.log==2?jM:jd)),g.font=Zd(g.font),g.labelFont=Zd(g.labelFont),g._size=g.size(n,null,v,0),g._space=g._rotate=g._incrs=g._found=g._splits=g._values=null,g._size>0&&(fi[v]=!0,g._el=qn(Nv,p))}}function ls(g,v,R,P){let[F,X,it,lt]=R,pt=v%2,Et=0;return pt==0&&(lt||X)&&(Et=v==0&&!F||v==2&&!it?Je(Fd.size/3):0),pt==1&&(F||it)&&(Et=v==1&&!X||v==3&&!lt?Je(zd.size/2):0),Et}let So=n.padding=(i.padding||[ls,ls,ls,ls]).map(g=>le(pe(g,ls))),di=n._padding=So.map((g,v)=>g(n,v,fi,0)),S,O=null,G=null,q=s==1?w[0].idxs:null,k=null,ft=!1;function Mt(g,v){if(t=g??[],n.data=n._data=t,s==2){S=0;for(let R=1;R<w.length;R++)S+=t[R][0].length}else{t.length==0&&(n.data=n._data=t=[[]]),k=t[0],S=k.length;let R=t;if(W==2){R=t.slice();let P=R[0]=Array(S);for(let F=0;F<S;F++)P[F]=F}n._data=t=R}if(zs(!0),rn("setData"),W==2&&(Qt=!0),v!==!1){let R=C;R.auto(n,ft)?Nt():Gi(I,R.min,R.max),Yt=Yt||At.left>=0,N=!0,Vs()}}n.setData=Mt;function Nt(){ft=!0;let g,v;s==1&&(S>0?(O=q[0]=0,G=q[1]=S-1,g=t[0][O],v=t[0][G],W==2?(g=O,v=G):g==v&&(W==3?[g,v]=za(g,g,C.log,!1):W==4?[g,v]=kh(g,g,C.log,!1):C.time?v=g+Je(86400/A):[g,v]=Ba(g,v,zh,!0))):(O=q[0]=g=null,G=q[1]=v=null)),Gi(I,g,v)}let Lt,Wt,qt,Ot,ae,ye,Me,en,ue,Ct;function kn(g,v,R,P,F,X){g??=ud,R??=Hh,P??="butt",F??=ud,X??="round",g!=Lt&&(h.strokeStyle=Lt=g),F!=Wt&&(h.fillStyle=Wt=F),v!=qt&&(h.lineWidth=qt=v),X!=ae&&(h.lineJoin=ae=X),P!=ye&&(h.lineCap=ye=P),R!=Ot&&h.setLineDash(Ot=R)}function fe(g,v,R,P){v!=Wt&&(h.fillStyle=Wt=v),g!=Me&&(h.font=Me=g),R!=en&&(h.textAlign=en=R),P!=ue&&(h.textBaseline=ue=P)}function pn(g,v,R,P,F=0){if(P.length>0&&g.auto(n,ft)&&(v==null||v.min==null)){let X=pe(O,0),it=pe(G,P.length-1),lt=R.min==null?g.distr==3?Kv(P,X,it):Jv(P,X,it,F):[R.min,R.max];g.min=Zn(g.min,R.min=lt[0]),g.max=dn(g.max,R.max=lt[1])}}let Si={min:null,max:null};function mn(){for(let P in D){let F=D[P];j[P]==null&&(F.min==null||j[I]!=null&&F.auto(n,ft))&&(j[P]=Si)}for(let P in D){let F=D[P];j[P]==null&&F.from!=null&&j[F.from]!=null&&(j[P]=Si)}j[I]!=null&&zs(!0);let g={};for(let P in j){let F=j[P];if(F!=null){let X=g[P]=Or(D[P],oM);if(F.min!=null)Ye(X,F);else if(P!=I||s==2)if(S==0&&X.from==null){let it=X.range(n,null,null,P);X.min=it[0],X.max=it[1]}else X.min=ce,X.max=-ce}}if(S>0){w.forEach((P,F)=>{if(s==1){let X=P.scale,it=j[X];if(it==null)return;let lt=g[X];if(F==0){let pt=lt.range(n,lt.min,lt.max,X);lt.min=pt[0],lt.max=pt[1],O=hi(lt.min,t[0]),G=hi(lt.max,t[0]),G-O>1&&(t[0][O]<lt.min&&O++,t[0][G]>lt.max&&G--),P.min=k[O],P.max=k[G]}else P.show&&P.auto&&pn(lt,it,P,t[F],P.sorted);P.idxs[0]=O,P.idxs[1]=G}else if(F>0&&P.show&&P.auto){let[X,it]=P.facets,lt=X.scale,pt=it.scale,[Et,Tt]=t[F],Rt=g[lt],$t=g[pt];Rt!=null&&pn(Rt,j[lt],X,Et,X.sorted),$t!=null&&pn($t,j[pt],it,Tt,it.sorted),P.min=it.min,P.max=it.max}});for(let P in g){let F=g[P],X=j[P];if(F.from==null&&(X==null||X.min==null)){let it=F.range(n,F.min==ce?null:F.min,F.max==-ce?null:F.max,P);F.min=it[0],F.max=it[1]}}}for(let P in g){let F=g[P];if(F.from!=null){let X=g[F.from];if(X.min==null)F.min=F.max=null;else{let it=F.range(n,X.min,X.max,P);F.min=it[0],F.max=it[1]}}}let v={},R=!1;for(let P in g){let F=g[P],X=D[P];if(X.min!=F.min||X.max!=F.max){X.min=F.min,X.max=F.max;let it=X.distr;X._min=it==3?ki(X.min):it==4?Sh(X.min,X.asinh):it==100?X.fwd(X.min):X.min,X._max=it==3?ki(X.max):it==4?Sh(X.max,X.asinh):it==100?X.fwd(X.max):X.max,v[P]=R=!0}}if(R){w.forEach((P,F)=>{s==2?F>0&&v.y&&(P._paths=null):v[P.scale]&&(P._paths=null)});for(let P in v)Qt=!0,rn("setScale",P);At.show&&At.left>=0&&(Yt=N=!0)}for(let P in j)j[P]=null}function cs(g){let v=Ph(O-1,0,S-1),R=Ph(G+1,0,S-1);for(;g[v]==null&&v>0;)v--;for(;g[R]==null&&R<S-1;)R++;return[v,R]}function Ae(){S>0&&(w.forEach((g,v)=>{if(v>0&&g.show&&(Tn(v,!1),Tn(v,!0),g._paths==null)){Ct!=g.alpha&&(h.globalAlpha=Ct=g.alpha);let R=s==2?[0,t[v][0].length-1]:cs(t[v]);g._paths=g.paths(n,v,R[0],R[1]),Ct!=1&&(h.globalAlpha=Ct=1)}}),w.forEach((g,v)=>{if(v>0&&g.show){Ct!=g.alpha&&(h.globalAlpha=Ct=g.alpha),g._paths!=null&&Vi(v,!1);{let R=g._paths!=null?g._paths.gaps:null,P=g.points.show(n,v,O,G,R),F=g.points.filter(n,v,P,R);(P||F)&&(g.points._paths=g.points.paths(n,v,O,G,F),Vi(v,!0))}Ct!=1&&(h.globalAlpha=Ct=1),rn("drawSeries",v)}}))}function Tn(g,v){let R=v?w[g].points:w[g];R._stroke=R.stroke(n,g),R._fill=R.fill(n,g)}function Vi(g,v){let R=v?w[g].points:w[g],{stroke:P,fill:F,clip:X,flags:it,_stroke:lt=R._stroke,_fill:pt=R._fill,_width:Et=R.width}=R._paths;Et=Re(Et*_e,3);let Tt=null,Rt=Et%2/2;v&&pt==null&&(pt=Et>0?"#fff":lt);let $t=R.pxAlign==1&&Rt>0;if($t&&h.translate(Rt,Rt),!v){let Ce=Xt-Et/2,he=at-Et/2,oe=_t+Et,Kt=Bt+Et;Tt=new Path2D,Tt.rect(Ce,he,oe,Kt)}v?zn(lt,Et,R.dash,R.cap,pt,P,F,it,X):Mn(g,lt,Et,R.dash,R.cap,pt,P,F,it,Tt,X),$t&&h.translate(-Rt,-Rt)}function Mn(g,v,R,P,F,X,it,lt,pt,Et,Tt){let Rt=!1;pt!=0&&L.forEach(($t,Ce)=>{if($t.series[0]==g){let he=w[$t.series[1]],oe=t[$t.series[1]],Kt=(he._paths||xo).band;rs(Kt)&&(Kt=$t.dir==1?Kt[0]:Kt[1]);let kt,we=null;he.show&&Kt&&Qv(oe,O,G)?(we=$t.fill(n,Ce)||X,kt=he._paths.clip):Kt=null,zn(v,R,P,F,we,it,lt,pt,Et,Tt,kt,Kt),Rt=!0}}),Rt||zn(v,R,P,F,X,it,lt,pt,Et,Tt)}let Jn=Fr|Dh;function zn(g,v,R,P,F,X,it,lt,pt,Et,Tt,Rt){kn(g,v,R,P,F),(pt||Et||Rt)&&(h.save(),pt&&h.clip(pt),Et&&h.clip(Et)),Rt?(lt&Jn)==Jn?(h.clip(Rt),Tt&&h.clip(Tt),bo(F,it),hs(g,X,v)):lt&Dh?(bo(F,it),h.clip(Rt),hs(g,X,v)):lt&Fr&&(h.save(),h.clip(Rt),Tt&&h.clip(Tt),bo(F,it),h.restore(),hs(g,X,v)):(bo(F,it),hs(g,X,v)),(pt||Et||Rt)&&h.restore()}function hs(g,v,R){R>0&&(v instanceof Map?v.forEach((P,F)=>{h.strokeStyle=Lt=F,h.stroke(P)}):v!=null&&g&&h.stroke(v))}function bo(g,v){v instanceof Map?v.forEach((R,P)=>{h.fillStyle=Wt=P,h.fill(R)}):v!=null&&g&&h.fill(v)}function Vp(g,v,R,P){let F=b[g],X;if(P<=0)X=[0,0];else{let it=F._space=F.space(n,g,v,R,P),lt=F._incrs=F.incrs(n,g,v,R,P,it);X=vS(v,R,lt,P,it)}return F._found=X}function ja(g,v,R,P,F,X,it,lt,pt,Et){let Tt=it%2/2;m==1&&h.translate(Tt,Tt),kn(lt,it,pt,Et,lt),h.beginPath();let Rt,$t,Ce,he,oe=F+(P==0||P==3?-X:X);R==0?($t=F,he=oe):(Rt=F,Ce=oe);for(let Kt=0;Kt<g.length;Kt++)v[Kt]!=null&&(R==0?Rt=Ce=g[Kt]:$t=he=g[Kt],h.moveTo(Rt,$t),h.lineTo(Ce,he));h.stroke(),m==1&&h.translate(-Tt,-Tt)}function Hp(g){let v=!0;return b.forEach((R,P)=>{if(!R.show)return;let F=D[R.scale];if(F.min==null){R._show&&(v=!1,R._show=!1,zs(!1));return}else R._show||(v=!1,R._show=!0,zs(!1));let X=R.side,it=X%2,{min:lt,max:pt}=F,[Et,Tt]=Vp(P,lt,pt,it==0?y:B);if(Tt==0)return;let Rt=F.distr==2,$t=R._splits=R.splits(n,P,lt,pt,Et,Tt,Rt),Ce=F.distr==2?$t.map(kt=>k[kt]):$t,he=F.distr==2?k[$t[1]]-k[$t[0]]:Et,oe=R._values=R.values(n,R.filter(n,Ce,P,Tt,he),P,Tt,he);R._rotate=X==2?R.rotate(n,oe,P,Tt):0;let Kt=R._size;R._size=$n(R.size(n,oe,P,g)),Kt!=null&&R._size!=Kt&&(v=!1)}),v}function Gp(g){let v=!0;return So.forEach((R,P)=>{let F=R(n,P,fi,g);F!=di[P]&&(v=!1),di[P]=F}),v}function Wp(){for(let g=0;g<b.length;g++){let v=b[g];if(!v.show||!v._show)continue;let R=v.side,P=R%2,F,X,it=v.stroke(n,g),lt=R==0||R==3?-1:1;if(v.label){let xn=v.labelGap*lt,An=Je((v._lpos+xn)*_e);fe(v.labelFont[0],it,"center",R==2?uo:hd),h.save(),P==1?(F=X=0,h.translate(An,Je(at+Bt/2)),h.rotate((R==3?-Oa:Oa)/2)):(F=Je(Xt+_t/2),X=An),h.fillText(v.label,F,X),h.restore()}let[pt,Et]=v._found;if(Et==0)continue;let Tt=D[v.scale],Rt=P==0?_t:Bt,$t=P==0?Xt:at,Ce=Je(v.gap*_e),he=v._splits,oe=Tt.distr==2?he.map(xn=>k[xn]):he,Kt=Tt.distr==2?k[he[1]]-k[he[0]]:pt,kt=v.ticks,we=v.border,ke=kt.show?Je(kt.size*_e):0,Be=v._rotate*-Oa/180,Le=d(v._pos*_e),He=(ke+Ce)*lt,Sn=Le+He;X=P==0?Sn:0,F=P==1?Sn:0;let bn=v.font[0],Vn=v.align==1?Pr:v.align==2?vh:Be>0?Pr:Be<0?vh:P==0?"center":R==3?vh:Pr,Kn=Be||P==1?"middle":R==2?uo:hd;fe(bn,it,Vn,Kn);let jn=v.font[1]*v.lineGap,gn=he.map(xn=>d(l(xn,Tt,Rt,$t))),gi=v._values;for(let xn=0;xn<gi.length;xn++){let An=gi[xn];if(An!=null){P==0?F=gn[xn]:X=gn[xn],An=""+An;let Zs=An.indexOf(`
`)==-1?[An]:An.split(/\n/gm);for(let Yi=0;Yi<Zs.length;Yi++){let Hn=Zs[Yi];Be?(h.save(),h.translate(F,X+Yi*jn),h.rotate(Be),h.fillText(Hn,0,0),h.restore()):h.fillText(Hn,F,X+Yi*jn)}}}kt.show&&ja(gn,kt.filter(n,oe,g,Et,Kt),P,R,Le,ke,Re(kt.width*_e,3),kt.stroke(n,g),kt.dash,kt.cap);let _n=v.grid;_n.show&&ja(gn,_n.filter(n,oe,g,Et,Kt),P,P==0?2:1,P==0?at:Xt,P==0?Bt:_t,Re(_n.width*_e,3),_n.stroke(n,g),_n.dash,_n.cap),we.show&&ja([Le],[1],P==0?1:0,P==0?1:2,P==1?at:Xt,P==1?Bt:_t,Re(we.width*_e,3),we.stroke(n,g),we.dash,we.cap)}rn("drawAxes")}function zs(g){w.forEach((v,R)=>{R>0&&(v._paths=null,g&&(s==1?(v.min=null,v.max=null):v.facets.forEach(P=>{P.min=null,P.max=null})))})}let wo=!1,Qa=!1,Hr=[];function Xp(){Qa=!1;for(let g=0;g<Hr.length;g++)rn(...Hr[g]);Hr.length=0}function Vs(){wo||(dM(Qh),wo=!0)}function Yp(g,v=!1){wo=!0,Qa=v,g(n),Qh(),v&&Hr.length>0&&queueMicrotask(Xp)}n.batch=Yp;function Qh(){if(Vt&&(mn(),Vt=!1),Qt&&(wt(),Qt=!1),St){if(De(_,Pr,nt),De(_,uo,J),De(_,po,y),De(_,mo,B),De(x,Pr,nt),De(x,uo,J),De(x,po,y),De(x,mo,B),De(p,po,Ft),De(p,mo,T),f.width=Je(Ft*_e),f.height=Je(T*_e),b.forEach(({_el:g,_show:v,_size:R,_pos:P,side:F})=>{if(g!=null)if(v){let X=F===3||F===0?R:0,it=F%2==1;De(g,it?"left":"top",P-X),De(g,it?"width":"height",R),De(g,it?"top":"left",it?J:nt),De(g,it?"height":"width",it?B:y),Ch(g,Ns)}else On(g,Ns)}),Lt=Wt=qt=ae=ye=Me=en=ue=Ot=null,Ct=1,Xr(!0),nt!=tt||J!=Pt||y!=gt||B!=vt){zs(!1);let g=y/gt,v=B/vt;if(At.show&&!Yt&&At.left>=0){At.left*=g,At.top*=v,Hs&&xi(Hs,Je(At.left),0,y,B),Gs&&xi(Gs,0,Je(At.top),y,B);for(let R=0;R<ze.length;R++){let P=ze[R];P!=null&&(ui[R]*=g,Mi[R]*=v,xi(P,$n(ui[R]),$n(Mi[R]),y,B))}}if(Ie.show&&!me&&Ie.left>=0&&Ie.width>0){Ie.left*=g,Ie.width*=g,Ie.top*=v,Ie.height*=v;for(let R in rl)De(Ys,R,Ie[R])}tt=nt,Pt=J,gt=y,vt=B}rn("setSize"),St=!1}Ft>0&&T>0&&(h.clearRect(0,0,f.width,f.height),rn("drawClear"),E.forEach(g=>g()),rn("draw")),Ie.show&&me&&(Eo(Ie),me=!1),At.show&&Yt&&(fs(null,!0,!1),Yt=!1),dt.show&&dt.live&&N&&(il(),N=!1),c||(c=!0,n.status=1,rn("ready")),ft=!1,wo=!1}n.redraw=(g,v)=>{Qt=v||!1,g!==!1?Gi(I,C.min,C.max):Vs()};function tl(g,v){let R=D[g];if(R.from==null){if(S==0){let P=R.range(n,v.min,v.max,g);v.min=P[0],v.max=P[1]}if(v.min>v.max){let P=v.min;v.min=v.max,v.max=P}if(S>1&&v.min!=null&&v.max!=null&&v.max-v.min<1e-16)return;g==I&&R.distr==2&&S>0&&(v.min=hi(v.min,t[0]),v.max=hi(v.max,t[0]),v.min==v.max&&v.max++),j[g]=v,Vt=!0,Vs()}}n.setScale=tl;let el,nl,Hs,Gs,tu,eu,Ws,Xs,nu,iu,Pe,Ne,Hi=!1,ln=At.drag,nn=ln.x,sn=ln.y;At.show&&(At.x&&(el=qn(Fv,x)),At.y&&(nl=qn(Bv,x)),C.ori==0?(Hs=el,Gs=nl):(Hs=nl,Gs=el),Pe=At.left,Ne=At.top);let Ie=n.select=Ye({show:!0,over:!0,left:0,width:0,top:0,height:0},i.select),Ys=Ie.show?qn(Ov,Ie.over?x:_):null;function Eo(g,v){if(Ie.show){for(let R in g)Ie[R]=g[R],R in rl&&De(Ys,R,g[R]);v!==!1&&rn("setSelect")}}n.setSelect=Eo;function qp(g,v){let R=w[g],P=Gt?Dt[g]:null;if(R.show)P&&Ch(P,Ns);else{P&&On(P,Ns);let F=vi?ze[0]:ze[g];xi(F,-10,-10,y,B)}}function Gi(g,v,R){tl(g,{min:v,max:R})}function pi(g,v,R,P){v.focus!=null&&jp(g),v.show!=null&&w.forEach((F,X)=>{X>0&&(g==X||g==null)&&(F.show=v.show,qp(X,v.show),s==2?(Gi(F.facets[0].scale,null,null),Gi(F.facets[1].scale,null,null)):Gi(F.scale,null,null),Vs())}),R!==!1&&rn("setSeries",g,v),P&&Yr("setSeries",n,g,v)}n.setSeries=pi;function $p(g,v){Ye(L[g],v)}function Zp(g,v){g.fill=le(g.fill||null),g.dir=pe(g.dir,-1),v=v??L.length,L.splice(v,0,g)}function Jp(g){g==null?L.length=0:L.splice(g,1)}n.addBand=Zp,n.setBand=$p,n.delBand=Jp;function Kp(g,v){w[g].alpha=v,At.show&&ze[g]&&(ze[g].style.opacity=v),Gt&&Dt[g]&&(Dt[g].style.opacity=v)}let bi,Wi,us,qs={focus:!0};function jp(g){if(g!=us){let v=g==null,R=tn.alpha!=1;w.forEach((P,F)=>{if(s==1||F>0){let X=v||F==0||F==g;P._focus=v?null:X,R&&Kp(F,X?1:tn.alpha)}}),us=g,R&&Vs()}}Gt&&yi&&Ut(md,ct,g=>{At._lock||(re(g),us!=null&&pi(null,qs,!0,Ve.setSeries))});function mi(g,v,R){let P=D[v];R&&(g=g/_e-(P.ori==1?J:nt));let F=y;P.ori==1&&(F=B,g=F-g),P.dir==-1&&(g=F-g);let X=P._min,it=P._max,lt=g/F,pt=X+(it-X)*lt,Et=P.distr;return Et==3?Ur(10,pt):Et==4?eM(pt,P.asinh):Et==100?P.bwd(pt):pt}function Qp(g,v){let R=mi(g,I,v);return hi(R,t[0],O,G)}n.valToIdx=g=>hi(g,t[0]),n.posToIdx=Qp,n.posToVal=mi,n.valToPos=(g,v,R)=>D[v].ori==0?o(g,D[v],R?_t:y,R?Xt:0):a(g,D[v],R?Bt:B,R?at:0),n.setCursor=(g,v,R)=>{Pe=g.left,Ne=g.top,fs(null,v,R)};function su(g,v){De(Ys,Pr,Ie.left=g),De(Ys,po,Ie.width=v)}function ru(g,v){De(Ys,uo,Ie.top=g),De(Ys,mo,Ie.height=v)}let Gr=C.ori==0?su:ru,Wr=C.ori==1?su:ru;function tm(){if(Gt&&dt.live)for(let g=s==2?1:0;g<w.length;g++){if(g==0&&se)continue;let v=dt.values[g],R=0;for(let P in v)Ht[g][R++].firstChild.nodeValue=v[P]}}function il(g,v){if(g!=null&&(g.idxs?g.idxs.forEach((R,P)=>{mt[P]=R}):rM(g.idx)||mt.fill(g.idx),dt.idx=mt[0]),Gt&&dt.live){for(let R=0;R<w.length;R++)(R>0||s==1&&!se)&&em(R,mt[R]);tm()}N=!1,v!==!1&&rn("setLegend")}n.setLegend=il;function em(g,v){let R=w[g],P=g==0&&W==2?k:t[g],F;se?F=R.values(n,g,v)??jt:(F=R.value(n,v==null?null:P[v],g,v),F=F==null?jt:{_:F}),dt.values[g]=F}function fs(g,v,R){nu=Pe,iu=Ne,[Pe,Ne]=At.move(n,Pe,Ne),At.left=Pe,At.top=Ne,At.show&&(Hs&&xi(Hs,Je(Pe),0,y,B),Gs&&xi(Gs,0,Je(Ne),y,B));let P,F=O>G;bi=ce,Wi=null;let X=C.ori==0?y:B,it=C.ori==1?y:B;if(Pe<0||S==0||F){P=At.idx=null;for(let lt=0;lt<w.length;lt++){let pt=ze[lt];pt!=null&&xi(pt,-10,-10,y,B)}yi&&pi(null,qs,!0,g==null&&Ve.setSeries),dt.live&&(mt.fill(P),N=!0)}else{let lt,pt,Et;s==1&&(lt=C.ori==0?Pe:Ne,pt=mi(lt,I),P=At.idx=hi(pt,t[0],O,G),Et=V(t[0][P],C,X,0));let Tt=-10,Rt=-10,$t=0,Ce=0,he=!0,oe="",Kt="";for(let kt=s==2?1:0;kt<w.length;kt++){let we=w[kt],ke=mt[kt],Be=ke==null?null:s==1?t[kt][ke]:t[kt][1][ke],Le=At.dataIdx(n,kt,P,pt),He=Le==null?null:s==1?t[kt][Le]:t[kt][1][Le];N=N||He!=Be||Le!=ke,mt[kt]=Le;let Sn=Le==P?Et:V(s==1?t[0][Le]:t[kt][0][Le],C,X,0);if(kt>0&&we.show){let bn=He==null?-10:Y(He,s==1?D[we.scale]:D[we.facets[1].scale],it,0);if(yi&&He!=null){let Vn=C.ori==1?Pe:Ne,Kn=Ke(tn.dist(n,kt,Le,bn,Vn));if(Kn<bi){let jn=tn.bias;if(jn!=0){let gn=mi(Vn,we.scale),gi=He>=0?1:-1,_n=gn>=0?1:-1;_n==gi&&(_n==1?jn==1?He>=gn:He<=gn:jn==1?He<=gn:He>=gn)&&(bi=Kn,Wi=kt)}else bi=Kn,Wi=kt}}if(N||vi){let Vn,Kn;C.ori==0?(Vn=Sn,Kn=bn):(Vn=bn,Kn=Sn);let jn,gn,gi,_n,xn,An,Zs=!0,Yi=be.bbox;if(Yi!=null){Zs=!1;let Hn=Yi(n,kt);gi=Hn.left,_n=Hn.top,jn=Hn.width,gn=Hn.height}else gi=Vn,_n=Kn,jn=gn=be.size(n,kt);if(An=be.fill(n,kt),xn=be.stroke(n,kt),vi)kt==Wi&&bi<=tn.prox&&(Tt=gi,Rt=_n,$t=jn,Ce=gn,he=Zs,oe=An,Kt=xn);else{let Hn=ze[kt];Hn!=null&&(ui[kt]=gi,Mi[kt]=_n,Sd(Hn,jn,gn,Zs),vd(Hn,An,xn),xi(Hn,$n(gi),$n(_n),y,B))}}}}if(vi){let kt=tn.prox,we=us==null?bi<=kt:bi>kt||Wi!=us;if(N||we){let ke=ze[0];ui[0]=Tt,Mi[0]=Rt,Sd(ke,$t,Ce,he),vd(ke,oe,Kt),xi(ke,$n(Tt),$n(Rt),y,B)}}}if(Ie.show&&Hi)if(g!=null){let[lt,pt]=Ve.scales,[Et,Tt]=Ve.match,[Rt,$t]=g.cursor.sync.scales,Ce=g.cursor.drag;if(nn=Ce._x,sn=Ce._y,nn||sn){let{left:he,top:oe,width:Kt,height:kt}=g.select,we=g.scales[Rt].ori,ke=g.posToVal,Be,Le,He,Sn,bn,Vn=lt!=null&&Et(lt,Rt),Kn=pt!=null&&Tt(pt,$t);Vn&&nn?(we==0?(Be=he,Le=Kt):(Be=oe,Le=kt),He=D[lt],Sn=V(ke(Be,Rt),He,X,0),bn=V(ke(Be+Le,Rt),He,X,0),Gr(Zn(Sn,bn),Ke(bn-Sn))):Gr(0,X),Kn&&sn?(we==1?(Be=he,Le=Kt):(Be=oe,Le=kt),He=D[pt],Sn=Y(ke(Be,$t),He,it,0),bn=Y(ke(Be+Le,$t),He,it,0),Wr(Zn(Sn,bn),Ke(bn-Sn))):Wr(0,it)}else To()}else{let lt=Ke(nu-tu),pt=Ke(iu-eu);if(C.ori==1){let $t=lt;lt=pt,pt=$t}nn=ln.x&&lt>=ln.dist,sn=ln.y&&pt>=ln.dist;let Et=ln.uni;Et!=null?nn&&sn&&(nn=lt>=Et,sn=pt>=Et,!nn&&!sn&&(pt>lt?sn=!0:nn=!0)):ln.x&&ln.y&&(nn||sn)&&(nn=sn=!0);let Tt,Rt;nn&&(C.ori==0?(Tt=Ws,Rt=Pe):(Tt=Xs,Rt=Ne),Gr(Zn(Tt,Rt),Ke(Rt-Tt)),sn||Wr(0,it)),sn&&(C.ori==1?(Tt=Ws,Rt=Pe):(Tt=Xs,Rt=Ne),Wr(Zn(Tt,Rt),Ke(Rt-Tt)),nn||Gr(0,X)),!nn&&!sn&&(Gr(0,0),Wr(0,0))}if(ln._x=nn,ln._y=sn,g==null){if(R){if(gu!=null){let[lt,pt]=Ve.scales;Ve.values[0]=lt!=null?mi(C.ori==0?Pe:Ne,lt):null,Ve.values[1]=pt!=null?mi(C.ori==1?Pe:Ne,pt):null}Yr(fd,n,Pe,Ne,y,B,P)}if(yi){let lt=R&&Ve.setSeries,pt=tn.prox;us==null?bi<=pt&&pi(Wi,qs,!0,lt):bi>pt?pi(null,qs,!0,lt):Wi!=us&&pi(Wi,qs,!0,lt)}}N&&(dt.idx=P,il()),v!==!1&&rn("setCursor")}let Xi=null;Object.defineProperty(n,"rect",{get(){return Xi==null&&Xr(!1),Xi}});function Xr(g=!1){g?Xi=null:(Xi=x.getBoundingClientRect(),rn("syncRect",Xi))}function ou(g,v,R,P,F,X,it){At._lock||Hi&&g!=null&&g.movementX==0&&g.movementY==0||(sl(g,v,R,P,F,X,it,!1,g!=null),g!=null?fs(null,!0,!0):fs(v,!0,!1))}function sl(g,v,R,P,F,X,it,lt,pt){if(Xi==null&&Xr(!1),re(g),g!=null)R=g.clientX-Xi.left,P=g.clientY-Xi.top;else{if(R<0||P<0){Pe=-10,Ne=-10;return}let[Et,Tt]=Ve.scales,Rt=v.cursor.sync,[$t,Ce]=Rt.values,[he,oe]=Rt.scales,[Kt,kt]=Ve.match,we=v.axes[0].side%2==1,ke=C.ori==0?y:B,Be=C.ori==1?y:B,Le=we?X:F,He=we?F:X,Sn=we?P:R,bn=we?R:P;if(he!=null?R=Kt(Et,he)?l($t,D[Et],ke,0):-10:R=ke*(Sn/Le),oe!=null?P=kt(Tt,oe)?l(Ce,D[Tt],Be,0):-10:P=Be*(bn/He),C.ori==1){let Vn=R;R=P,P=Vn}}pt&&((R<=1||R>=y-1)&&(R=Ds(R,y)),(P<=1||P>=B-1)&&(P=Ds(P,B))),lt?(tu=R,eu=P,[Ws,Xs]=At.move(n,R,P)):(Pe=R,Ne=P)}let rl={width:0,height:0,left:0,top:0};function To(){Eo(rl,!1)}let au,lu,cu,hu;function uu(g,v,R,P,F,X,it){Hi=!0,nn=sn=ln._x=ln._y=!1,sl(g,v,R,P,F,X,it,!0,!1),g!=null&&(Ut(Mh,Th,fu,!1),Yr(dd,n,Ws,Xs,y,B,null));let{left:lt,top:pt,width:Et,height:Tt}=Ie;au=lt,lu=pt,cu=Et,hu=Tt,To()}function fu(g,v,R,P,F,X,it){Hi=ln._x=ln._y=!1,sl(g,v,R,P,F,X,it,!1,!0);let{left:lt,top:pt,width:Et,height:Tt}=Ie,Rt=Et>0||Tt>0,$t=au!=lt||lu!=pt||cu!=Et||hu!=Tt;if(Rt&&$t&&Eo(Ie),ln.setScale&&Rt&&$t){let Ce=lt,he=Et,oe=pt,Kt=Tt;if(C.ori==1&&(Ce=pt,he=Tt,oe=lt,Kt=Et),nn&&Gi(I,mi(Ce,I),mi(Ce+he,I)),sn)for(let kt in D){let we=D[kt];kt!=I&&we.from==null&&we.min!=ce&&Gi(kt,mi(oe+Kt,kt),mi(oe,kt))}To()}else At.lock&&(At._lock=!At._lock,fs(null,!0,!1));g!=null&&(xe(Mh,Th),Yr(Mh,n,Pe,Ne,y,B,null))}function nm(g,v,R,P,F,X,it){if(At._lock)return;re(g);let lt=Hi;if(Hi){let pt=!0,Et=!0,Tt=10,Rt,$t;C.ori==0?(Rt=nn,$t=sn):(Rt=sn,$t=nn),Rt&&$t&&(pt=Pe<=Tt||Pe>=y-Tt,Et=Ne<=Tt||Ne>=B-Tt),Rt&&pt&&(Pe=Pe<Ws?0:y),$t&&Et&&(Ne=Ne<Xs?0:B),fs(null,!0,!0),Hi=!1}Pe=-10,Ne=-10,fs(null,!0,!0),lt&&(Hi=lt)}function du(g,v,R,P,F,X,it){At._lock||(re(g),Nt(),To(),g!=null&&Yr(gd,n,Pe,Ne,y,B,null))}function pu(){b.forEach(MS),xt(n.width,n.height,!0)}Os(Fa,Lr,pu);let $s={};$s.mousedown=uu,$s.mousemove=ou,$s.mouseup=fu,$s.dblclick=du,$s.setSeries=(g,v,R,P)=>{let F=Ve.match[2];R=F(n,v,R),R!=-1&&pi(R,P,!0,!1)},At.show&&(Ut(dd,x,uu),Ut(fd,x,ou),Ut(pd,x,g=>{re(g),Xr(!1)}),Ut(md,x,nm),Ut(gd,x,du),Uh.add(n),n.syncRect=Xr);let Ao=n.hooks=i.hooks||{};function rn(g,v,R){Qa?Hr.push([g,v,R]):g in Ao&&Ao[g].forEach(P=>{P.call(null,n,v,R)})}(i.plugins||[]).forEach(g=>{for(let v in g.hooks)Ao[v]=(Ao[v]||[]).concat(g.hooks[v])});let mu=(g,v,R)=>R,Ve=Ye({key:null,setSeries:!1,filters:{pub:Ad,sub:Ad},scales:[I,w[1]?w[1].scale:null],match:[Cd,Cd,mu],values:[null,null]},At.sync);Ve.match.length==2&&Ve.match.push(mu),At.sync=Ve;let gu=Ve.key,ol=vp(gu);function Yr(g,v,R,P,F,X,it){Ve.filters.pub(g,v,R,P,F,X,it)&&ol.pub(g,v,R,P,F,X,it)}ol.sub(n);function im(g,v,R,P,F,X,it){Ve.filters.sub(g,v,R,P,F,X,it)&&$s[g](null,v,R,P,F,X,it)}n.pub=im;function sm(){ol.unsub(n),Uh.delete(n),Zt.clear(),Rh(Fa,Lr,pu),u.remove(),ct?.remove(),rn("destroy")}n.destroy=sm;function al(){rn("init",i,t),Mt(t||i.data,!1),j[I]?tl(I,j[I]):Nt(),me=Ie.show&&(Ie.width>0||Ie.height>0),Yt=N=!0,xt(i.width,i.height)}return w.forEach(as),b.forEach(Mo),e?e instanceof HTMLElement?(e.appendChild(u),al()):e(n,al):al(),n}cn.assign=Ye;cn.fmtNum=Vh;cn.rangeNum=Ba;cn.rangeLog=za;cn.rangeAsinh=kh;cn.orient=Bs;cn.pxRatio=_e;cn.join=fM;cn.fmtDate=Gh,cn.tzDate=bM;cn.sync=vp;{cn.addGap=rS,cn.clipGaps=Ga;let i=cn.paths={points:Tp};i.linear=Cp,i.stepped=lS,i.bars=cS,i.spline=uS}var Lp=["#2f6fb7","#c9542b","#2e8b57","#8a5bb5","#b8860b","#c2408c","#4a9fb0","#777777"],SS=i=>Lp[i%Lp.length],qa=class{constructor(t){this.place=t,new ResizeObserver(()=>this.plot?.setSize({width:this.width(),height:260})).observe(t)}width(){return Math.max(200,this.place.clientWidth)}show(t,e,n){if(this.plot?.destroy(),this.plot=void 0,!n.length)return;let s=getComputedStyle(this.place),r={stroke:s.color,grid:{stroke:s.getPropertyValue("--line"),width:1},ticks:{stroke:s.getPropertyValue("--line"),width:1},font:`12px ${s.fontFamily}`,labelFont:`12px ${s.fontFamily}`},o={width:this.width(),height:260,scales:{x:{time:!1}},legend:{live:!1},axes:[{...r,label:t},{...r,size:80}],series:[{label:t},...n.map((a,l)=>({label:a.label,stroke:SS(l),width:2,points:{show:e.length<60,size:6}}))]};this.plot=new cn(o,[e,...n.map(a=>a.values)],this.place)}};var Dp={type:"change"},Kh={type:"start"},Np={type:"end"},$a=new wr,Up=new ni,bS=Math.cos(70*Xf.DEG2RAD),Qe=new H,En=2*Math.PI,Te={NONE:-1,ROTATE:0,DOLLY:1,PAN:2,TOUCH_ROTATE:3,TOUCH_PAN:4,TOUCH_DOLLY_PAN:5,TOUCH_DOLLY_ROTATE:6},Jh=1e-6,Za=class extends Ta{constructor(t,e=null){super(t,e),this.state=Te.NONE,this.enabled=!0,this.target=new H,this.cursor=new H,this.minDistance=0,this.maxDistance=1/0,this.minZoom=0,this.maxZoom=1/0,this.minTargetRadius=0,this.maxTargetRadius=1/0,this.minPolarAngle=0,this.maxPolarAngle=Math.PI,this.minAzimuthAngle=-1/0,this.maxAzimuthAngle=1/0,this.enableDamping=!1,this.dampingFactor=.05,this.enableZoom=!0,this.zoomSpeed=1,this.enableRotate=!0,this.rotateSpeed=1,this.enablePan=!0,this.panSpeed=1,this.screenSpacePanning=!0,this.keyPanSpeed=7,this.zoomToCursor=!1,this.autoRotate=!1,this.autoRotateSpeed=2,this.keys={LEFT:"ArrowLeft",UP:"ArrowUp",RIGHT:"ArrowRight",BOTTOM:"ArrowDown"},this.mouseButtons={LEFT:Ps.ROTATE,MIDDLE:Ps.DOLLY,RIGHT:Ps.PAN},this.touches={ONE:Is.ROTATE,TWO:Is.DOLLY_PAN},this.target0=this.target.clone(),this.position0=this.object.position.clone(),this.zoom0=this.object.zoom,this._domElementKeyEvents=null,this._lastPosition=new H,this._lastQuaternion=new oi,this._lastTargetPosition=new H,this._quat=new oi().setFromUnitVectors(t.up,new H(0,1,0)),this._quatInverse=this._quat.clone().invert(),this._spherical=new co,this._sphericalDelta=new co,this._scale=1,this._panOffset=new H,this._rotateStart=new ie,this._rotateEnd=new ie,this._rotateDelta=new ie,this._panStart=new ie,this._panEnd=new ie,this._panDelta=new ie,this._dollyStart=new ie,this._dollyEnd=new ie,this._dollyDelta=new ie,this._dollyDirection=new H,this._mouse=new ie,this._performCursorZoom=!1,this._pointers=[],this._pointerPositions={},this._controlActive=!1,this._onPointerMove=ES.bind(this),this._onPointerDown=wS.bind(this),this._onPointerUp=TS.bind(this),this._onContextMenu=DS.bind(this),this._onMouseWheel=RS.bind(this),this._onKeyDown=PS.bind(this),this._onTouchStart=IS.bind(this),this._onTouchMove=LS.bind(this),this._onMouseDown=AS.bind(this),this._onMouseMove=CS.bind(this),this._interceptControlDown=US.bind(this),this._interceptControlUp=NS.bind(this),this.domElement!==null&&this.connect(),this.update()}connect(){this.domElement.addEventListener("pointerdown",this._onPointerDown),this.domElement.addEventListener("pointercancel",this._onPointerUp),this.domElement.addEventListener("contextmenu",this._onContextMenu),this.domElement.addEventListener("wheel",this._onMouseWheel,{passive:!1}),this.domElement.getRootNode().addEventListener("keydown",this._interceptControlDown,{passive:!0,capture:!0}),this.domElement.style.touchAction="none"}disconnect(){this.domElement.removeEventListener("pointerdown",this._onPointerDown),this.domElement.removeEventListener("pointermove",this._onPointerMove),this.domElement.removeEventListener("pointerup",this._onPointerUp),this.domElement.removeEventListener("pointercancel",this._onPointerUp),this.domElement.removeEventListener("wheel",this._onMouseWheel),this.domElement.removeEventListener("contextmenu",this._onContextMenu),this.stopListenToKeyEvents(),this.domElement.getRootNode().removeEventListener("keydown",this._interceptControlDown,{capture:!0}),this.domElement.style.touchAction="auto"}dispose(){this.disconnect()}getPolarAngle(){return this._spherical.phi}getAzimuthalAngle(){return this._spherical.theta}getDistance(){return this.object.position.distanceTo(this.target)}listenToKeyEvents(t){t.addEventListener("keydown",this._onKeyDown),this._domElementKeyEvents=t}stopListenToKeyEvents(){this._domElementKeyEvents!==null&&(this._domElementKeyEvents.removeEventListener("keydown",this._onKeyDown),this._domElementKeyEvents=null)}saveState(){this.target0.copy(this.target),this.position0.copy(this.object.position),this.zoom0=this.object.zoom}reset(){this.target.copy(this.target0),this.object.position.copy(this.position0),this.object.zoom=this.zoom0,this.object.updateProjectionMatrix(),this.dispatchEvent(Dp),this.update(),this.state=Te.NONE}update(t=null){let e=this.object.position;Qe.copy(e).sub(this.target),Qe.applyQuaternion(this._quat),this._spherical.setFromVector3(Qe),this.autoRotate&&this.state===Te.NONE&&this._rotateLeft(this._getAutoRotationAngle(t)),this.enableDamping?(this._spherical.theta+=this._sphericalDelta.theta*this.dampingFactor,this._spherical.phi+=this._sphericalDelta.phi*this.dampingFactor):(this._spherical.theta+=this._sphericalDelta.theta,this._spherical.phi+=this._sphericalDelta.phi);let n=this.minAzimuthAngle,s=this.maxAzimuthAngle;isFinite(n)&&isFinite(s)&&(n<-Math.PI?n+=En:n>Math.PI&&(n-=En),s<-Math.PI?s+=En:s>Math.PI&&(s-=En),n<=s?this._spherical.theta=Math.max(n,Math.min(s,this._spherical.theta)):this._spherical.theta=this._spherical.theta>(n+s)/2?Math.max(n,this._spherical.theta):Math.min(s,this._spherical.theta)),this._spherical.phi=Math.max(this.minPolarAngle,Math.min(this.maxPolarAngle,this._spherical.phi)),this._spherical.makeSafe(),this.enableDamping===!0?this.target.addScaledVector(this._panOffset,this.dampingFactor):this.target.add(this._panOffset),this.target.sub(this.cursor),this.target.clampLength(this.minTargetRadius,this.maxTargetRadius),this.target.add(this.cursor);let r=!1;if(this.zoomToCursor&&this._performCursorZoom||this.object.isOrthographicCamera)this._spherical.radius=this._clampDistance(this._spherical.radius);else{let o=this._spherical.radius;this._spherical.radius=this._clampDistance(this._spherical.radius*this._scale),r=o!=this._spherical.radius}if(Qe.setFromSpherical(this._spherical),Qe.applyQuaternion(this._quatInverse),e.copy(this.target).add(Qe),this.object.lookAt(this.target),this.enableDamping===!0?(this._sphericalDelta.theta*=1-this.dampingFactor,this._sphericalDelta.phi*=1-this.dampingFactor,this._panOffset.multiplyScalar(1-this.dampingFactor)):(this._sphericalDelta.set(0,0,0),this._panOffset.set(0,0,0)),this.zoomToCursor&&this._performCursorZoom){let o=null;if(this.object.isPerspectiveCamera){let a=Qe.length();o=this._clampDistance(a*this._scale);let l=a-o;this.object.position.addScaledVector(this._dollyDirection,l),this.object.updateMatrixWorld(),r=!!l}else if(this.object.isOrthographicCamera){let a=new H(this._mouse.x,this._mouse.y,0);a.unproject(this.object);let l=this.object.zoom;this.object.zoom=Math.max(this.minZoom,Math.min(this.maxZoom,this.object.zoom/this._scale)),this.object.updateProjectionMatrix(),r=l!==this.object.zoom;let c=new H(this._mouse.x,this._mouse.y,0);c.unproject(this.object),this.object.position.sub(c).add(a),this.object.updateMatrixWorld(),o=Qe.length()}else console.warn("WARNING: OrbitControls.js encountered an unknown camera type - zoom to cursor disabled."),this.zoomToCursor=!1;o!==null&&(this.screenSpacePanning?this.target.set(0,0,-1).transformDirection(this.object.matrix).multiplyScalar(o).add(this.object.position):($a.origin.copy(this.object.position),$a.direction.set(0,0,-1).transformDirection(this.object.matrix),Math.abs(this.object.up.dot($a.direction))<bS?this.object.lookAt(this.target):(Up.setFromNormalAndCoplanarPoint(this.object.up,this.target),$a.intersectPlane(Up,this.target))))}else if(this.object.isOrthographicCamera){let o=this.object.zoom;this.object.zoom=Math.max(this.minZoom,Math.min(this.maxZoom,this.object.zoom/this._scale)),o!==this.object.zoom&&(this.object.updateProjectionMatrix(),r=!0)}return this._scale=1,this._performCursorZoom=!1,r||this._lastPosition.distanceToSquared(this.object.position)>Jh||8*(1-this._lastQuaternion.dot(this.object.quaternion))>Jh||this._lastTargetPosition.distanceToSquared(this.target)>Jh?(this.dispatchEvent(Dp),this._lastPosition.copy(this.object.position),this._lastQuaternion.copy(this.object.quaternion),this._lastTargetPosition.copy(this.target),!0):!1}_getAutoRotationAngle(t){return t!==null?En/60*this.autoRotateSpeed*t:En/60/60*this.autoRotateSpeed}_getZoomScale(t){let e=Math.abs(t*.01);return Math.pow(.95,this.zoomSpeed*e)}_rotateLeft(t){this._sphericalDelta.theta-=t}_rotateUp(t){this._sphericalDelta.phi-=t}_panLeft(t,e){Qe.setFromMatrixColumn(e,0),Qe.multiplyScalar(-t),this._panOffset.add(Qe)}_panUp(t,e){this.screenSpacePanning===!0?Qe.setFromMatrixColumn(e,1):(Qe.setFromMatrixColumn(e,0),Qe.crossVectors(this.object.up,Qe)),Qe.multiplyScalar(t),this._panOffset.add(Qe)}_pan(t,e){let n=this.domElement;if(this.object.isPerspectiveCamera){let s=this.object.position;Qe.copy(s).sub(this.target);let r=Qe.length();r*=Math.tan(this.object.fov/2*Math.PI/180),this._panLeft(2*t*r/n.clientHeight,this.object.matrix),this._panUp(2*e*r/n.clientHeight,this.object.matrix)}else this.object.isOrthographicCamera?(this._panLeft(t*(this.object.right-this.object.left)/this.object.zoom/n.clientWidth,this.object.matrix),this._panUp(e*(this.object.top-this.object.bottom)/this.object.zoom/n.clientHeight,this.object.matrix)):(console.warn("WARNING: OrbitControls.js encountered an unknown camera type - pan disabled."),this.enablePan=!1)}_dollyOut(t){this.object.isPerspectiveCamera||this.object.isOrthographicCamera?this._scale/=t:(console.warn("WARNING: OrbitControls.js encountered an unknown camera type - dolly/zoom disabled."),this.enableZoom=!1)}_dollyIn(t){this.object.isPerspectiveCamera||this.object.isOrthographicCamera?this._scale*=t:(console.warn("WARNING: OrbitControls.js encountered an unknown camera type - dolly/zoom disabled."),this.enableZoom=!1)}_updateZoomParameters(t,e){if(!this.zoomToCursor)return;this._performCursorZoom=!0;let n=this.domElement.getBoundingClientRect(),s=t-n.left,r=e-n.top,o=n.width,a=n.height;this._mouse.x=s/o*2-1,this._mouse.y=-(r/a)*2+1,this._dollyDirection.set(this._mouse.x,this._mouse.y,1).unproject(this.object).sub(this.object.position).normalize()}_clampDistance(t){return Math.max(this.minDistance,Math.min(this.maxDistance,t))}_handleMouseDownRotate(t){this._rotateStart.set(t.clientX,t.clientY)}_handleMouseDownDolly(t){this._updateZoomParameters(t.clientX,t.clientX),this._dollyStart.set(t.clientX,t.clientY)}_handleMouseDownPan(t){this._panStart.set(t.clientX,t.clientY)}_handleMouseMoveRotate(t){this._rotateEnd.set(t.clientX,t.clientY),this._rotateDelta.subVectors(this._rotateEnd,this._rotateStart).multiplyScalar(this.rotateSpeed);let e=this.domElement;this._rotateLeft(En*this._rotateDelta.x/e.clientHeight),this._rotateUp(En*this._rotateDelta.y/e.clientHeight),this._rotateStart.copy(this._rotateEnd),this.update()}_handleMouseMoveDolly(t){this._dollyEnd.set(t.clientX,t.clientY),this._dollyDelta.subVectors(this._dollyEnd,this._dollyStart),this._dollyDelta.y>0?this._dollyOut(this._getZoomScale(this._dollyDelta.y)):this._dollyDelta.y<0&&this._dollyIn(this._getZoomScale(this._dollyDelta.y)),this._dollyStart.copy(this._dollyEnd),this.update()}_handleMouseMovePan(t){this._panEnd.set(t.clientX,t.clientY),this._panDelta.subVectors(this._panEnd,this._panStart).multiplyScalar(this.panSpeed),this._pan(this._panDelta.x,this._panDelta.y),this._panStart.copy(this._panEnd),this.update()}_handleMouseWheel(t){this._updateZoomParameters(t.clientX,t.clientY),t.deltaY<0?this._dollyIn(this._getZoomScale(t.deltaY)):t.deltaY>0&&this._dollyOut(this._getZoomScale(t.deltaY)),this.update()}_handleKeyDown(t){let e=!1;switch(t.code){case this.keys.UP:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateUp(En*this.rotateSpeed/this.domElement.clientHeight):this._pan(0,this.keyPanSpeed),e=!0;break;case this.keys.BOTTOM:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateUp(-En*this.rotateSpeed/this.domElement.clientHeight):this._pan(0,-this.keyPanSpeed),e=!0;break;case this.keys.LEFT:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateLeft(En*this.rotateSpeed/this.domElement.clientHeight):this._pan(this.keyPanSpeed,0),e=!0;break;case this.keys.RIGHT:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateLeft(-En*this.rotateSpeed/this.domElement.clientHeight):this._pan(-this.keyPanSpeed,0),e=!0;break}e&&(t.preventDefault(),this.update())}_handleTouchStartRotate(t){if(this._pointers.length===1)this._rotateStart.set(t.pageX,t.pageY);else{let e=this._getSecondPointerPosition(t),n=.5*(t.pageX+e.x),s=.5*(t.pageY+e.y);this._rotateStart.set(n,s)}}_handleTouchStartPan(t){if(this._pointers.length===1)this._panStart.set(t.pageX,t.pageY);else{let e=this._getSecondPointerPosition(t),n=.5*(t.pageX+e.x),s=.5*(t.pageY+e.y);this._panStart.set(n,s)}}_handleTouchStartDolly(t){let e=this._getSecondPointerPosition(t),n=t.pageX-e.x,s=t.pageY-e.y,r=Math.sqrt(n*n+s*s);this._dollyStart.set(0,r)}_handleTouchStartDollyPan(t){this.enableZoom&&this._handleTouchStartDolly(t),this.enablePan&&this._handleTouchStartPan(t)}_handleTouchStartDollyRotate(t){this.enableZoom&&this._handleTouchStartDolly(t),this.enableRotate&&this._handleTouchStartRotate(t)}_handleTouchMoveRotate(t){if(this._pointers.length==1)this._rotateEnd.set(t.pageX,t.pageY);else{let n=this._getSecondPointerPosition(t),s=.5*(t.pageX+n.x),r=.5*(t.pageY+n.y);this._rotateEnd.set(s,r)}this._rotateDelta.subVectors(this._rotateEnd,this._rotateStart).multiplyScalar(this.rotateSpeed);let e=this.domElement;this._rotateLeft(En*this._rotateDelta.x/e.clientHeight),this._rotateUp(En*this._rotateDelta.y/e.clientHeight),this._rotateStart.copy(this._rotateEnd)}_handleTouchMovePan(t){if(this._pointers.length===1)this._panEnd.set(t.pageX,t.pageY);else{let e=this._getSecondPointerPosition(t),n=.5*(t.pageX+e.x),s=.5*(t.pageY+e.y);this._panEnd.set(n,s)}this._panDelta.subVectors(this._panEnd,this._panStart).multiplyScalar(this.panSpeed),this._pan(this._panDelta.x,this._panDelta.y),this._panStart.copy(this._panEnd)}_handleTouchMoveDolly(t){let e=this._getSecondPointerPosition(t),n=t.pageX-e.x,s=t.pageY-e.y,r=Math.sqrt(n*n+s*s);this._dollyEnd.set(0,r),this._dollyDelta.set(0,Math.pow(this._dollyEnd.y/this._dollyStart.y,this.zoomSpeed)),this._dollyOut(this._dollyDelta.y),this._dollyStart.copy(this._dollyEnd);let o=(t.pageX+e.x)*.5,a=(t.pageY+e.y)*.5;this._updateZoomParameters(o,a)}_handleTouchMoveDollyPan(t){this.enableZoom&&this._handleTouchMoveDolly(t),this.enablePan&&this._handleTouchMovePan(t)}_handleTouchMoveDollyRotate(t){this.enableZoom&&this._handleTouchMoveDolly(t),this.enableRotate&&this._handleTouchMoveRotate(t)}_addPointer(t){this._pointers.push(t.pointerId)}_removePointer(t){delete this._pointerPositions[t.pointerId];for(let e=0;e<this._pointers.length;e++)if(this._pointers[e]==t.pointerId){this._pointers.splice(e,1);return}}_isTrackingPointer(t){for(let e=0;e<this._pointers.length;e++)if(this._pointers[e]==t.pointerId)return!0;return!1}_trackPointer(t){let e=this._pointerPositions[t.pointerId];e===void 0&&(e=new ie,this._pointerPositions[t.pointerId]=e),e.set(t.pageX,t.pageY)}_getSecondPointerPosition(t){let e=t.pointerId===this._pointers[0]?this._pointers[1]:this._pointers[0];return this._pointerPositions[e]}_customWheelEvent(t){let e=t.deltaMode,n={clientX:t.clientX,clientY:t.clientY,deltaY:t.deltaY};switch(e){case 1:n.deltaY*=16;break;case 2:n.deltaY*=100;break}return t.ctrlKey&&!this._controlActive&&(n.deltaY*=10),n}};function wS(i){this.enabled!==!1&&(this._pointers.length===0&&(this.domElement.setPointerCapture(i.pointerId),this.domElement.addEventListener("pointermove",this._onPointerMove),this.domElement.addEventListener("pointerup",this._onPointerUp)),!this._isTrackingPointer(i)&&(this._addPointer(i),i.pointerType==="touch"?this._onTouchStart(i):this._onMouseDown(i)))}function ES(i){this.enabled!==!1&&(i.pointerType==="touch"?this._onTouchMove(i):this._onMouseMove(i))}function TS(i){switch(this._removePointer(i),this._pointers.length){case 0:this.domElement.releasePointerCapture(i.pointerId),this.domElement.removeEventListener("pointermove",this._onPointerMove),this.domElement.removeEventListener("pointerup",this._onPointerUp),this.dispatchEvent(Np),this.state=Te.NONE;break;case 1:let t=this._pointers[0],e=this._pointerPositions[t];this._onTouchStart({pointerId:t,pageX:e.x,pageY:e.y});break}}function AS(i){let t;switch(i.button){case 0:t=this.mouseButtons.LEFT;break;case 1:t=this.mouseButtons.MIDDLE;break;case 2:t=this.mouseButtons.RIGHT;break;default:t=-1}switch(t){case Ps.DOLLY:if(this.enableZoom===!1)return;this._handleMouseDownDolly(i),this.state=Te.DOLLY;break;case Ps.ROTATE:if(i.ctrlKey||i.metaKey||i.shiftKey){if(this.enablePan===!1)return;this._handleMouseDownPan(i),this.state=Te.PAN}else{if(this.enableRotate===!1)return;this._handleMouseDownRotate(i),this.state=Te.ROTATE}break;case Ps.PAN:if(i.ctrlKey||i.metaKey||i.shiftKey){if(this.enableRotate===!1)return;this._handleMouseDownRotate(i),this.state=Te.ROTATE}else{if(this.enablePan===!1)return;this._handleMouseDownPan(i),this.state=Te.PAN}break;default:this.state=Te.NONE}this.state!==Te.NONE&&this.dispatchEvent(Kh)}function CS(i){switch(this.state){case Te.ROTATE:if(this.enableRotate===!1)return;this._handleMouseMoveRotate(i);break;case Te.DOLLY:if(this.enableZoom===!1)return;this._handleMouseMoveDolly(i);break;case Te.PAN:if(this.enablePan===!1)return;this._handleMouseMovePan(i);break}}function RS(i){this.enabled===!1||this.enableZoom===!1||this.state!==Te.NONE||(i.preventDefault(),this.dispatchEvent(Kh),this._handleMouseWheel(this._customWheelEvent(i)),this.dispatchEvent(Np))}function PS(i){this.enabled===!1||this.enablePan===!1||this._handleKeyDown(i)}function IS(i){switch(this._trackPointer(i),this._pointers.length){case 1:switch(this.touches.ONE){case Is.ROTATE:if(this.enableRotate===!1)return;this._handleTouchStartRotate(i),this.state=Te.TOUCH_ROTATE;break;case Is.PAN:if(this.enablePan===!1)return;this._handleTouchStartPan(i),this.state=Te.TOUCH_PAN;break;default:this.state=Te.NONE}break;case 2:switch(this.touches.TWO){case Is.DOLLY_PAN:if(this.enableZoom===!1&&this.enablePan===!1)return;this._handleTouchStartDollyPan(i),this.state=Te.TOUCH_DOLLY_PAN;break;case Is.DOLLY_ROTATE:if(this.enableZoom===!1&&this.enableRotate===!1)return;this._handleTouchStartDollyRotate(i),this.state=Te.TOUCH_DOLLY_ROTATE;break;default:this.state=Te.NONE}break;default:this.state=Te.NONE}this.state!==Te.NONE&&this.dispatchEvent(Kh)}function LS(i){switch(this._trackPointer(i),this.state){case Te.TOUCH_ROTATE:if(this.enableRotate===!1)return;this._handleTouchMoveRotate(i),this.update();break;case Te.TOUCH_PAN:if(this.enablePan===!1)return;this._handleTouchMovePan(i),this.update();break;case Te.TOUCH_DOLLY_PAN:if(this.enableZoom===!1&&this.enablePan===!1)return;this._handleTouchMoveDollyPan(i),this.update();break;case Te.TOUCH_DOLLY_ROTATE:if(this.enableZoom===!1&&this.enableRotate===!1)return;this._handleTouchMoveDollyRotate(i),this.update();break;default:this.state=Te.NONE}}function DS(i){this.enabled!==!1&&i.preventDefault()}function US(i){i.key==="Control"&&(this._controlActive=!0,this.domElement.getRootNode().addEventListener("keyup",this._interceptControlUp,{passive:!0,capture:!0}))}function NS(i){i.key==="Control"&&(this._controlActive=!1,this.domElement.getRootNode().removeEventListener("keyup",this._interceptControlUp,{passive:!0,capture:!0}))}var Op=`
uniform float factor;
varying vec3 rest;
vec4 placed(vec3 displacement) { rest = position; return modelViewMatrix * vec4(position + factor * displacement, 1.0); }`,Fp=`
uniform vec4 cut;
varying vec3 rest;
bool isCutOff() { return dot(cut.xyz, rest) > cut.w; }`,OS=`${Op}
attribute vec3 displacement;
attribute float place;
varying float colour;
varying vec3 seen;
void main() { vec4 p = placed(displacement); seen = p.xyz; colour = place; gl_Position = projectionMatrix * p; }`,FS=`${Fp}
uniform sampler2D colours;
uniform vec3 none;
varying float colour;
varying vec3 seen;
void main() {
  if (isCutOff()) discard;
  vec3 normal = normalize(cross(dFdx(seen), dFdy(seen)));
  vec3 base = colour > 1e6 ? none : texture2D(colours, vec2(clamp(colour, 0.0, 1.0), 0.5)).rgb;
  gl_FragColor = vec4(base * (0.68 + 0.32 * abs(normal.z)), 1.0);
}`,BS=`${Op}
attribute vec3 displacement;
void main() { gl_Position = projectionMatrix * placed(displacement); }`,kS=`${Fp}
uniform vec4 ink;
void main() { if (isCutOff()) discard; gl_FragColor = ink; }`,Bp={iso:[1,-1,1],front:[0,-1,0],back:[0,1,0],right:[1,0,0],left:[-1,0,0],top:[0,0,1],bottom:[0,0,-1]},kp=Object.keys(Bp),jh=class{constructor(t,e){this.model=t,this.scene=new va,this.factor={value:0},this.colours={value:new Ma(new Uint8Array(1024),256,1)},this.colours.value.magFilter=this.colours.value.minFilter=Xn,this.geometry=t.makeFaceGeometry();let n=new Nn({vertexShader:OS,fragmentShader:FS,side:ii,polygonOffset:!0,polygonOffsetFactor:1,polygonOffsetUnits:1,uniforms:{factor:this.factor,colours:this.colours,cut:e.cut,none:e.none}});this.lineMaterial=new Nn({vertexShader:BS,fragmentShader:kS,transparent:!0,depthWrite:!1,uniforms:{factor:this.factor,cut:e.cut,ink:e.ink}}),this.add(new Ln(this.geometry,[n])),this.lines=new Map,this.displacements=null,this.places=t.points}add(t){t.frustumCulled=!1,this.scene.add(t)}showLines(t){if(t!=="none"&&!this.lines.has(t)){let{edges:e,rows:n}=t==="mesh"?{edges:this.model.edges,rows:this.model.parts.map(o=>o.edges)}:this.model.outline(),s=this.model.makeLineGeometry(e),r=new wa(s,[this.lineMaterial]);this.model.setDisplacements(s,e,this.displacements),this.model.setLineGroups(s,n),this.lines.set(t,{edges:e,rows:n,geometry:s,object:r}),this.add(r)}for(let[e,{object:n}]of this.lines)n.visible=e===t}showParts(){this.model.setGroups(this.geometry);for(let{geometry:t,rows:e}of this.lines.values())this.model.setLineGroups(t,e)}deform(t,e){if(t!==this.displacements){this.displacements=t,this.model.setDisplacements(this.geometry,this.model.cornerPoints,t);for(let{geometry:n,edges:s}of this.lines.values())this.model.setDisplacements(n,s,t)}this.factor.value=e,this.places=this.model.deformed(t,e)}colour(t,e,n){let s=o=>n.length>0?(o-n.first)/n.length:o===o?.5:NaN;this.model.setPlaces(this.geometry,t,e,s);let r=this.colours.value;r.image.data.set(n.table(256)),r.needsUpdate=!0}dispose(){this.geometry.dispose(),this.colours.value.dispose();for(let{geometry:t}of this.lines.values())t.dispose()}},Ja=class{constructor(t,e,n){this.canvas=t,this.model=e,this.ondraw=n,this.renderer=new ya({canvas:t,antialias:!0,alpha:!0,preserveDrawingBuffer:!0}),this.renderer.outputColorSpace=ss,this.renderer.autoClear=!1,this.camera=new lo(-1,1,1,-1,-10*e.size,10*e.size),this.camera.up.set(0,0,1),this.controls=new Za(this.camera,t),this.controls.zoomToCursor=!1,this.controls.addEventListener("change",()=>this.draw()),this.shared={cut:{value:new Fe(0,0,0,1)},none:{value:new H},ink:{value:new Fe}},this.panes=[],this.lines="outline",this.setPanes(1),this.look("iso"),new ResizeObserver(()=>this.draw()).observe(t)}setPanes(t){for(;this.panes.length>t;)this.panes.pop().dispose();for(;this.panes.length<t;)this.panes.push(new jh(this.model,this.shared));this.showLines(this.lines)}showLines(t){this.lines=t;for(let e of this.panes)e.showLines(t);this.draw()}showParts(){for(let t of this.panes)t.showParts();this.draw()}setInk(t){this.shared.ink.value.set(...t?[.02,.02,.04,.6]:[.05,.05,.07,.55]),this.shared.none.value.set(...t?[.42,.43,.46]:[.72,.73,.75]),this.draw()}cut(t){this.plane=t,this.shared.cut.value.set(...t??[0,0,0,1]),this.draw()}get reach(){return .62*this.model.size}look(t){let e=new H(...Bp[t]).normalize();Math.abs(e.z)===1&&(e.y=-1e-4*e.z),this.camera.zoom=1,this.controls.target.set(...[0,1,2].map(n=>(this.model.least[n]+this.model.greatest[n])/2)),this.camera.position.copy(this.controls.target).addScaledVector(e,this.model.size),this.controls.update(),this.draw()}flyTo(t){let e=new H(...t).sub(this.controls.target);this.controls.target.add(e),this.camera.position.add(e),this.camera.zoom=Math.max(this.camera.zoom,3),this.controls.update(),this.draw()}turn(t,e){let n=this.camera.position.clone().sub(this.controls.target),s=n.length(),r=Math.atan2(n.y,n.x)+t*Math.PI/180,o=Math.PI/2-.001,a=Math.asin(n.z/s)+e*Math.PI/180,l=Math.max(-o,Math.min(o,a));n.set(Math.cos(l)*Math.cos(r),Math.cos(l)*Math.sin(r),Math.sin(l)),this.camera.position.copy(this.controls.target).addScaledVector(n,s),this.controls.update(),this.draw()}pan(t,e){let{x:n,y:s}=this.axes(),r=2*this.reach/this.camera.zoom,o=n.multiplyScalar(-t*r).addScaledVector(s,-e*r);this.controls.target.add(o),this.camera.position.add(o),this.controls.update(),this.draw()}zoom(t){this.camera.zoom=Math.max(.05,Math.min(1e3,this.camera.zoom*t)),this.camera.updateProjectionMatrix(),this.draw()}axes(){this.camera.updateMatrixWorld();let[t,e,n]=[new H,new H,new H];return this.camera.matrixWorld.extractBasis(t,e,n),{x:t,y:e,z:n}}areas(){let{clientWidth:t,clientHeight:e}=this.canvas,n=this.panes.length,s=e>t,[r,o]=s?[t,Math.floor(e/n)]:[Math.floor(t/n),e];return this.panes.map((a,l)=>({left:s?0:l*r,top:s?l*o:0,width:r,height:o}))}draw(){this.isWaiting||(this.isWaiting=!0,requestAnimationFrame(()=>{this.isWaiting=!1,this.drawNow()}))}drawNow(){let{clientWidth:t,clientHeight:e}=this.canvas;if(!t||!e)return;let n=Math.min(devicePixelRatio,2);this.renderer.getPixelRatio()!==n&&this.renderer.setPixelRatio(n),(this.width!==t||this.height!==e)&&(this.renderer.setSize(t,e,!1),[this.width,this.height]=[t,e]);let s=this.areas();this.setFrustum(s[0]),this.renderer.setScissorTest(!1),this.renderer.clear(),this.renderer.setScissorTest(!0),this.panes.forEach((r,o)=>{let{left:a,top:l,width:c,height:u}=s[o],f=[a,e-l-u,c,u];this.renderer.setViewport(...f),this.renderer.setScissor(...f),this.renderer.render(r.scene,this.camera)}),this.ondraw()}setFrustum({width:t,height:e}){let n=t/e,s=this.reach*Math.max(1,1/n);Object.assign(this.camera,{left:-s*n,right:s*n,top:s,bottom:-s}),this.camera.updateProjectionMatrix(),this.camera.updateMatrixWorld()}project(t,e){let n=this.areas()[e],s=new H(...t).project(this.camera);return{x:n.left+(s.x+1)/2*n.width,y:n.top+(1-s.y)/2*n.height}}ray(t,e,n){let s=[2*(t-n.left)/n.width-1,1-2*(e-n.top)/n.height],{z:r}=this.axes();return{origin:new H(...s,0).unproject(this.camera).addScaledVector(r,4*this.model.size).toArray(),direction:r.negate().toArray()}}pick(t,e){let n=this.areas(),s=n.findIndex(({left:l,top:c,width:u,height:f})=>t>=l&&t<l+u&&e>=c&&e<c+f);if(s<0)return null;let{origin:r,direction:o}=this.ray(t,e,n[s]),a=this.model.pick(r,o,this.panes[s].places,this.plane);return a&&{...a,pane:s}}};var zS="Arrows turn, with Shift they move; + and \u2212 zoom, Home shows all, [ and ] go to the step before and behind.";function VS(i){let t=10**Math.floor(Math.log10(i));return t*[5,2,1].find(e=>e*t<=i*(1+1e-12))}function zp(i,t,e){let n=-1;for(let s=0;s<i.length;++s)t[s]&&i[s]===i[s]&&(n<0||e*i[s]<e*i[n])&&(n=s);return n}var Ka=class{constructor(t,e,{fields:n,displacement:s,solver:r}){this.header=t,this.model=e,this.fields=n,this.displacement=s,this.solver=r,this.steps=t.steps.length?t.steps:[{label:"no step",time:null}],this.step=this.steps.length-1,this.field=n.find(o=>o.name==="nodal-stress")??s??n[0],this.component=this.field.start,this.factor=0,this.rangeOf="step",this.compares=!!t.compared,this.sides=[],this.shown=[],this.picked=[],this.turn=0,this.makeElements()}async start(){this.view=new Ja(this.canvas,this.model,()=>this.placeMarks());let t=matchMedia("(prefers-color-scheme: dark)"),e=()=>this.view.setInk(t.matches);t.addEventListener("change",()=>(e(),this.showHistory())),e(),this.lines.value=this.model.edges.length>6e4?"outline":"mesh",this.view.showLines(this.lines.value),await this.update()}makeElements(){this.canvas=rt("canvas",{tabindex:0,role:"img","aria-label":"Model with its result","aria-describedby":"keys readout"}),this.marks=rt("div.marks",{"aria-hidden":"true"}),this.titles=rt("div.titles"),this.bars=rt("div.bars"),this.readout=rt("p.readout",{id:"readout",role:"status"},"Point at the model"),this.extremes=rt("p.extremes",{"aria-live":"polite"}),this.listenTo(this.canvas);let t=rt("div.stage",{},this.canvas,this.titles,this.marks,this.bars,this.readout);this.element=rt("section.model",{id:"model","aria-label":"Model"},t,this.makeControls()),this.makeHistory(),this.makeWorst()}makeControls(){return this.fieldChoice=Js(this.fields.map((t,e)=>({value:String(e),text:t.title})),String(this.fields.indexOf(this.field)),t=>this.choose(this.fields[Number(t)])),this.componentChoice=Js([],"",t=>this.choose(this.field,t)),this.fillComponents(),rt("form.controls",{onsubmit:t=>t.preventDefault(),"aria-label":"What is shown"},qi("Field",this.fieldChoice),qi("Component",this.componentChoice),this.makeStepControls(),this.makeDeformation(),this.makeCut(),this.makeLook(),this.makeRange(),this.extremes,this.makeFind(),this.makeParts(),rt("p.hint",{id:"keys"},`On the model: ${zS}`))}fillComponents(){hl(this.componentChoice,this.field.components.map(t=>({value:t,text:t})),this.component)}makeStepControls(){let t=this.steps.length-1;return this.stepSlider=rt("input",{type:"range",min:0,max:t,step:1,value:this.step,disabled:t===0,oninput:()=>this.goToStep(Number(this.stepSlider.value))}),this.stepText=rt("output",{for:"step"}),this.stepSlider.id="step",rt("div.control",{},rt("label",{for:"step"},"Step ",this.stepText),this.stepSlider)}makeDeformation(){if(!this.displacement)return null;this.factorInput=rt("input",{type:"number",step:"any",value:0,onchange:()=>this.deform(Number(this.factorInput.value)||0)});let t=rt("button",{type:"button",onclick:async()=>this.deform(await this.autoFactor())},"auto"),e=rt("button",{type:"button",onclick:()=>this.deform(0)},"none"),n=qi("Deformation, times",this.factorInput);return n.append(t,e),n.classList.add("row"),n}makeCut(){this.cutAxis=Js(["none","x","y","z","-x","-y","-z"].map(e=>({value:e,text:e==="none"?"none":`along ${e}`})),"none",()=>this.cut()),this.cutPlace=rt("input",{type:"range",min:0,max:1e3,value:500,disabled:!0,oninput:()=>this.cut(),"aria-label":"Place of the cut"}),this.cutText=rt("output");let t=qi("Cut",this.cutAxis);return t.append(this.cutPlace,this.cutText),t}makeLook(){let t=kp.map(e=>rt("button",{type:"button",onclick:()=>this.view.look(e)},e));return this.lines=Js([{value:"mesh",text:"mesh"},{value:"outline",text:"outline"},{value:"none",text:"none"}],"outline",e=>this.view.showLines(e)),rt("div.control",{},rt("div.row",{role:"group","aria-label":"Look at the model from"},...t),qi("Lines",this.lines))}makeRange(){this.rangeChoice=Js([{value:"step",text:"of this step"},{value:"all",text:"of all steps"},{value:"own",text:"given"}],"step",e=>{this.rangeOf=e;for(let n of this.rangeInputs)n.disabled=e!=="own";this.update()}),this.rangeInputs=["Least colour","Greatest colour"].map(e=>rt("input",{type:"number",step:"any","aria-label":e,disabled:!0,onchange:()=>this.update()}));let t=qi("Colours over the range",this.rangeChoice);return t.append(rt("div.row",{},...this.rangeInputs)),t}makeFind(){let t=rt("input",{type:"text",inputmode:"numeric",onkeydown:n=>{n.key==="Enter"&&this.find(t.value)}}),e=qi("Go to node",t);return this.findText=rt("p.hint",{role:"status"}),e.append(rt("button",{type:"button",onclick:()=>this.find(t.value)},"Go"),this.findText),e.classList.add("row"),e}makeParts(){let t=new La(this.model,()=>{this.view.showParts(),this.update()});return rt("details",{open:this.model.parts.length>1},rt("summary",{},"Parts"),t.place)}qualityButtons(){let t=[],e=(n,s)=>t.push(rt("button",{type:"button",onclick:()=>{s(),this.element.scrollIntoView()}},n)," ");for(let n of this.fields)/-error($|-)/.test(n.name)&&e(`Error measure: ${n.name}`,()=>this.choose(n)),/-spread($|-)/.test(n.name)&&e(`Spread at nodes: ${n.name}`,()=>this.choose(n));if(!this.compares)for(let n of this.solver.keys())e(`Ours beside the solver\u2019s: ${n.name}`,()=>{this.beside=n,this.choose(n,void 0,!0)});return t.length?t:["There is no measure of quality in the page."]}makeHistory(){this.chartPlace=rt("div.chart"),this.chart=new qa(this.chartPlace),this.pickedList=rt("ul.picked"),this.historyTable=rt("div"),this.history=Ls("history","History",rt("p.hint",{},"Click on the model, or go to a node, to follow its value over the steps."),this.pickedList,this.chartPlace,rt("details",{},rt("summary",{},"As a table"),this.historyTable))}makeWorst(){let{compared:t}=this.header;if(!t)return;let e=t.worst.map(n=>[n.field===null?n.place:rt("button.link",{type:"button",onclick:()=>this.showWorst(n)},n.place),n.kind,n.component,n.step,n.first,n.second,Xe(n.distance),Xe(n.excess)]);this.worst=Ls("worst","Worst places",rt("p",{},t.summary),...e.length?[wi("Differences, the worst first",["place","kind","component","step",...t.titles,"apart","times what is allowed"],e)]:[],...t["one-sided"].length?[wi("Blocks of one side alone",["kind","block","records","in"],t["one-sided"].map(n=>[n.kind,n.block,n.records,n.in]))]:[])}choose(t,e,n=!1){return n||(this.beside=null),this.field=t,this.component=e??(t.components.includes(this.component)&&this.component!=="value"?this.component:t.start),t.components.includes(this.component)||(this.component=t.start),this.fieldChoice.value=String(this.fields.indexOf(t)),this.fillComponents(),this.update()}goToStep(t){return this.step=Math.max(0,Math.min(this.steps.length-1,t)),this.stepSlider.value=this.step,this.update()}deform(t){return this.factor=t,this.factorInput.value=t,this.update()}async autoFactor(){let t=await this.displacement.columns(this.step);if(!t)return 0;let e=0;for(let n=0;n<t[0].length;++n)e=Math.max(e,Math.hypot(t[0][n],t[1][n],t[2][n])||0);return e>0?VS(.1*this.model.size/e):0}cut(){let t=this.cutAxis.value;if(this.cutPlace.disabled=t==="none",t==="none"){this.cutText.textContent="",this.view.cut(null);return}let e="xyz".indexOf(t.at(-1)),n=t.startsWith("-")?-1:1,s=Number(this.cutPlace.value)/1e3,r=this.model.least[e]+s*(this.model.greatest[e]-this.model.least[e]),o=[0,0,0,n*r];o[e]=n,this.cutText.textContent=`${"xyz"[e]} = ${Xe(r+this.model.origin[e])}`,this.view.cut(o)}listSides(){if(this.compares){let[e,n]=this.header.compared.titles,[s,r]=[0,1].map(o=>({field:this.field,side:o}));return[{title:e,...s},{title:n,...r},{title:"difference",field:new $r(s,r,"difference"),side:0}]}let t=this.beside&&this.solver.get(this.beside);if(t){let[e,n]=[this.field,t].map(s=>({field:s,side:0}));return[{title:"ours",...e},{title:"the solver\u2019s",...n},{title:"the solver\u2019s less ours",field:new $r(e,n,"difference"),side:0}]}return[{title:"",field:this.field,side:0}]}async update(){let t=++this.turn,e=this.step,n=this.listSides(),[s,r]=await Promise.all([Promise.all(n.map(({field:a,side:l})=>a.values(e,this.component,l))),Promise.all(n.map(({side:a})=>this.displacement?.columns(e,this.displacementSide(a,e))??null))]),o=await this.makeScales(n,s);t===this.turn&&(this.sides=n,this.view.panes.length!==n.length&&this.view.setPanes(n.length),this.shown=n.map(({field:a},l)=>({values:s[l],ofElements:a.ofElements,scale:o[l]})),n.forEach(({field:a},l)=>{let c=this.view.panes[l];c.deform(this.factor===0?null:r[l],this.factor),c.colour(a.ofElements,s[l],o[l])}),this.describe(),this.view.draw(),await this.showHistory())}displacementSide(t,e){return this.displacement.has(e,t)?t:0}async makeScales(t,e){let{points:n,elements:s}=this.model.visible(),r=await Promise.all(t.map(async({field:l,side:c},u)=>{let f=l.ofElements?s:n,h=[1/0,-1/0],p=_=>{if(_)for(let x of[1,-1]){let m=zp(_,f,x);m>=0&&Number.isFinite(_[m])&&([h[0],h[1]]=[Math.min(h[0],_[m]),Math.max(h[1],_[m])])}};if(p(e[u]),this.rangeOf==="all")for(let _=0;_<this.steps.length;++_)p(await l.values(_,this.component,c));return h[0]<=h[1]?h:[0,0]}));if(r.length>1){let l=[Math.min(r[0][0],r[1][0]),Math.max(r[0][1],r[1][1])];r[0]=r[1]=l}let[o,a]=this.rangeInputs.map(l=>l.value===""?NaN:Number(l.value));if(this.rangeOf==="own"&&o<a)for(let l=0;l<Math.min(2,r.length);++l)r[l]=[o,a];else this.rangeOf!=="own"&&this.rangeInputs.forEach((l,c)=>l.value=Number(r[0][c].toPrecision(6)));return r.map(l=>new Ia(l))}describe(){let{label:t,time:e,quantity:n}=this.steps[this.step],s=e===null?"":`, ${n??"time"} ${Xe(e)}`;this.stepText.textContent=`${this.step+1} of ${this.steps.length}: ${t}${s}`,this.stepSlider.setAttribute("aria-valuetext",this.stepText.textContent);let r=`${this.field.title}${this.component==="value"?"":` ${this.component}`}`;this.canvas.setAttribute("aria-label",`Model with ${r}, ${t}${s}`),Cn(this.titles,...this.sides.map(({title:o})=>rt("div",{},o?rt("span",{},o):r,...o?[rt("small",{},r)]:[]))),Cn(this.bars,...this.shown.map(o=>this.makeBar(o.scale))),this.findExtremes()}makeBar(t){let[e,n]=t.range,s=n-e,r=rt("canvas",{width:1,height:256,"aria-hidden":"true"}),o=r.getContext("2d");for(let c=0;c<256;++c)o.fillStyle=t.css(n-c/255*s),o.fillRect(0,c,1,1);let l=(s>0?[n,...sd(t.range,5).filter(c=>c-e>.06*s&&n-c>.06*s).reverse(),e]:[e]).map(c=>{let u=rt("span",{},Xe(Math.abs(c)<1e-9*s?0:c));return u.style.top=`${s>0?100*(n-c)/s:50}%`,u});return rt("div.bar",{role:"img","aria-label":`Colours from ${Xe(e)} to ${Xe(n)}`},r,...l)}findExtremes(){let{points:t,elements:e}=this.model.visible();this.extremeRows=this.shown.map(({values:a,ofElements:l})=>a?[1,-1].map(c=>zp(a,l?e:t,c)):[-1,-1]);let{values:n,ofElements:s}=this.shown[0],[r,o]=this.extremeRows[0];this.extremes.textContent=n?r<0?"Nothing that is shown has a value.":`On the outside, least ${Xe(n[r])} at ${this.nameOf(r,s)}, greatest ${Xe(n[o])} at ${this.nameOf(o,s)}.`:"This step has no values of the field.",Cn(this.marks,...this.extremeRows.flatMap(([a,l],c)=>[[a,"least"],[l,"greatest"]].filter(([u])=>u>=0).map(([u,f])=>{let h=this.shown[c],p=rt(`div.mark.${f}`,{},`${f==="least"?"\u25BD":"\u25B3"} ${Xe(h.values[u])}`);return p.place=()=>this.placeOf(u,h.ofElements,c),p.pane=c,p}))),this.ring=rt("div.ring",{hidden:!0}),this.marks.append(this.ring)}nameOf(t,e){return e?`element ${this.model.elementIds[t]}`:`node ${this.model.ids[t]}`}placeOf(t,e,n){let{places:s}=this.view.panes[n];return e?this.model.middleOf(t,s):Array.from(s.subarray(3*t,3*t+3))}placeMarks(){let t=this.view.areas();for(let e of this.marks.children){if(!e.place)continue;e.known??=e.place();let{x:n,y:s}=this.view.project(e.known,e.pane),{left:r,top:o,width:a,height:l}=t[e.pane];e.hidden=n<r||n>r+a||s<o||s>o+l,e.style.transform=`translate(${n}px, ${s}px)`}[...this.titles.children].forEach((e,n)=>{Object.assign(e.style,{left:`${t[n].left}px`,top:`${t[n].top}px`,width:`${t[n].width}px`})}),[...this.bars.children].forEach((e,n)=>{Object.assign(e.style,{left:`${t[n].left+12}px`,top:`${t[n].top+(t.length>1?60:44)}px`,height:`${Math.min(260,t[n].height*(t.length>1?.28:.6))}px`})})}listenTo(t){t.addEventListener("pointermove",e=>this.hover(e.offsetX,e.offsetY)),t.addEventListener("pointerdown",e=>this.pressed=[e.offsetX,e.offsetY]),t.addEventListener("pointerup",e=>{Math.hypot(e.offsetX-this.pressed?.[0],e.offsetY-this.pressed?.[1])<4&&this.pick(e.offsetX,e.offsetY)}),t.addEventListener("keydown",e=>this.key(e))}hover(t,e){this.pointer=[t,e],!this.isHovering&&(this.isHovering=!0,requestAnimationFrame(()=>{this.isHovering=!1,this.tell(this.view.pick(...this.pointer))}))}tell(t){if(!t){this.readout.textContent="Point at the model",this.ring.hidden=!0;return}let{point:e,element:n,pane:s}=t,{ofElements:r}=this.shown[s],o=r?n:e,a=[0,1,2].map(f=>Xe(this.model.points[3*e+f]+this.model.origin[f])),l=r?this.nameOf(n,!0):[this.nameOf(e,!1),...n===void 0?[]:[this.nameOf(n,!0)]].join(", ");this.readout.textContent=`${l}: ${this.tellValues(o)} at (${a.join(", ")})`;let{x:c,y:u}=this.view.project(this.placeOf(o,r,s),s);this.ring.hidden=!1,this.ring.style.transform=`translate(${c}px, ${u}px)`}tellValues(t){return this.shown.map(({values:e},n)=>`${this.sides[n].title?`${this.sides[n].title} `:""}${e?Xe(e[t]):"no value"}`).join(" \xB7 ")}key(t){let{shiftKey:e}=t,n={ArrowLeft:[-5,0],ArrowRight:[5,0],ArrowUp:[0,5],ArrowDown:[0,-5]}[t.key];if(n&&e)this.view.pan(n[0]/100,n[1]/100);else if(n)this.view.turn(...n);else if(t.key==="+"||t.key==="=")this.view.zoom(1.2);else if(t.key==="-")this.view.zoom(1/1.2);else if(t.key==="Home")this.view.look("iso");else if(t.key==="[")this.goToStep(this.step-1);else if(t.key==="]")this.goToStep(this.step+1);else return;t.preventDefault()}pick(t,e){let n=this.view.pick(t,e);n&&this.follow(this.shown[n.pane].ofElements?{element:n.element}:{point:n.point})}follow(t){let e=n=>n.point===t.point&&n.element===t.element;return this.picked.some(e)||this.picked.push(t),this.showHistory()}find(t){let e=Number(t),n=Number.isInteger(e)?this.model.findNode(e):-1;this.findText.textContent=n<0?`No node ${t} on the outside of the model`:"",n>=0&&this.goToPoint(n)}goToNode(t){let e=this.model.findNode(t);this.element.scrollIntoView(),e>=0?this.goToPoint(e):this.readout.textContent=`Node ${t} is inside the model`}goToPoint(t){this.view.flyTo(this.placeOf(t,!1,0)),this.field.ofElements||this.follow({point:t}),this.readout.textContent=`node ${this.model.ids[t]}`+(this.field.ofElements?"":`: ${this.tellValues(t)}`)}async showWorst(t){this.step=t.position,this.stepSlider.value=t.position;let e=this.fields.find(({name:s})=>s===t.field);await this.choose(e,e.components.includes(t.component)?t.component:void 0),this.element.scrollIntoView();let n=(e.ofElements?this.model.elementIds:this.model.ids).indexOf(t.id);if(n<0){this.readout.textContent=`${t.place} is inside the model`;return}this.view.flyTo(this.placeOf(n,e.ofElements,0)),this.tell(e.ofElements?{element:n,point:this.pointOf(n),pane:0}:{point:n,pane:0}),await this.follow(e.ofElements?{element:n}:{point:n})}pointOf(t){let e=this.model.triangleElements.indexOf(t);return e>=0?this.model.triangles[3*e]:this.model.beams[2*this.model.beamElements.indexOf(t)]}async showHistory(){let t=this.field.ofElements?"element":"point",e=this.picked.filter(c=>c[t]!==void 0),n=this.turn,s=[];for(let{field:c,side:u,title:f}of e.length?this.sides:[]){let h=e.map(p=>({label:`${f?`${f}, `:""}${this.nameOf(p[t],c.ofElements)}`,values:[],row:p[t]}));for(let p=0;p<this.steps.length;++p){let _=await c.values(p,this.component,u);for(let x of h){let m=_?_[x.row]:NaN;x.values.push(Number.isFinite(m)?m:null)}}s.push(...h)}if(n!==this.turn)return;let r=this.steps.map(({time:c})=>c),o=r.every((c,u)=>typeof c=="number"&&(u===0||c>r[u-1])),a=o?this.steps[0].quantity??"time":"step",l=o?r:r.map((c,u)=>u+1);this.chart.show(a,l,s),Cn(this.pickedList,...e.map(c=>rt("li",{},this.nameOf(c[t],this.field.ofElements)," ",rt("button.link",{type:"button","aria-label":`forget ${this.nameOf(c[t],this.field.ofElements)}`,onclick:()=>{this.picked=this.picked.filter(u=>u!==c),this.showHistory()}},"forget")))),Cn(this.historyTable,...s.length?[wi("Values over the steps",[a,...s.map(c=>c.label)],l.map((c,u)=>[Xe(c),...s.map(f=>f.values[u]===null?"":Xe(f.values[u]))]))]:[])}};function HS(i){let t=(e,n)=>rt("a",{href:`#${e}`},n);return rt("header",{},rt("h1",{},i.title),rt("p",{},i.compared?`Compared: ${i.compared.titles.join(", ")}`:rd(i.facts)),rt("nav",{"aria-label":"Sections"},t("model","Model"),t("history","History"),...i.compared?[t("worst","Worst places")]:[],t("quality","Quality"),t("blocks","Blocks"),t("origin","Origin")))}function GS(i,t){let{facts:e}=i;return Ls("quality","Quality",rt("p",{},...t.qualityButtons()),rt("h3",{},"Averages beside the solver\u2019s own"),od(e.deviations),...i.balance?[rt("h3",{},"Balance of forces"),ad(i.balance,n=>t.goToNode(n))]:[])}async function WS(){let i=JSON.parse(document.getElementById("header").textContent);document.title=i.title;let t=rt("p.loading",{role:"status"},"Reading the model \u2026"),e=rt("main",{},t);document.body.append(rt("a.skip",{href:"#model"},"To the model"),HS(i),e);try{let n=new Co(i),s=await Pa.load(n,i.model),r=new Ka(i,s,wu(n,i));Cn(e,r.element,r.history,...i.compared?[r.worst]:[],GS(i,r),Ls("blocks","Blocks",ld(i.facts.blocks)),Ls("origin","Origin",yh(i.facts.imports),...i.compared?[rt("h3",{},i.compared.titles[1]),yh(i.compared.imports)]:[],rt("p",{},`Written by ${i.program}. Values have ${i.bits===32?"seven digits":"16 bits"}.`))),await r.start(),document.body.dataset.state="ready"}catch(n){throw t.textContent=`The page cannot be shown: ${n.message}`,t.setAttribute("role","alert"),Cn(e,t),document.body.dataset.state="failed",n}}WS();})();
