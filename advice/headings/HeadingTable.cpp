#include "advice/headings/HeadingTable.h"

namespace tabulex {

namespace {

// English, Chinese, German, French, Spanish, Portuguese, Italian, Dutch, Polish, Russian,
// Japanese, Turkish, Korean, Swedish and Hungarian, where they have words of their own.
constexpr HeadingRow kHeadingRows[] = {
    {Meaning::Symbol,
     "symbol sym ticker name instrument security stock stockid stockcode stocksymbol code "
     "tradingsymbol scrip scripcode scripname asset pair currencypair cusip isin sedol ric figi "
     "secid seccode companyname contractsymbol underlying product tsymbol "
     "代码 股票代码 证券代码 合约代码 品种代码 品种 股票 名称 股票名称 证券名称 证券简称 简称 合约 "
     "kurzel wertpapier wkn titel bezeichnung "
     "titre code codeisin libelle valeurtitre simbolo activo valor ticker nombre "
     "ativo papel codigo titolo codice nome naam fonds aandeel "
     "nazwa walor spolka skrot тикер бумага инструмент код название символ "
     "銘柄 銘柄コード 銘柄名 コード 証券コード sembol hisse kod 종목 종목코드 종목명 aktie papir"},
    {Meaning::Date,
     "date day dt d tradedate tradingdate tradeday tradingday businessdate quotedate pricedate "
     "reportdate bardate opendate datadate asof asofdate yyyymmdd ymd datum data fecha dia jour "
     "日期 交易日期 交易日 时间日期 日付 取引日 年月日 tarih gun дата день dzien giorno handelstag "
     "handelsdatum 일자 날짜 nap"},
    {Meaning::Time,
     "time tm t tradetime bartime timeofday hour hours clock hhmm hhmmss zeit uhrzeit heure hora "
     "ora orario tijd uur czas godzina godz время час 时间 交易时间 时刻 時刻 時間 saat zaman 시간 "
     "tid ido"},
    {Meaning::Moment,
     "datetime timestamp dateandtime datetimeutc timestamputc utc gmt ts opentime closetime "
     "starttime endtime tradetimestamp barstart barend localtime unixtime unix epoch gmttime "
     "datetimestamp datumzeit datumuhrzeit dateheure fechahora datahora datetijd dataczas "
     "日期时间 时间戳 日時 датавремя tarihsaat"},
    {Meaning::Open,
     "open o op opn opening first openprice opnpric 开 开盘 开盘价 今开 今开盘 今开盘价 "
     "eroffnung eroffnungskurs erster ouverture ouv premier apertura abertura abert openingskoers "
     "opening otwarcie otw открытие откр 始値 寄付 acilis 시가 oppning nyito"},
    {Meaning::High,
     "high h hi highest max maximum hgh dayhigh hghpric 高 最高 最高价 hoch hochst hochstkurs "
     "tageshoch haut plushaut plushauts maximo maxima alto massimo hoog hoogste najwyzszy maks "
     "maksimum максимум макс 高値 yuksek enyuksek 고가 hogst maximumar"},
    {Meaning::Low,
     "low l lo lowest min minimum daylow lwpric 低 最低 最低价 tief tiefst tiefstkurs tagestief "
     "bas "
     "plusbas minimo minima bajo baixo minimi laag laagste najnizszy минимум мин 安値 dusuk "
     "endusuk 저가 lagst minimumar"},
    {Meaning::Close,
     "close c cl closing closeprice last lastprice settle settlement settleprice settlementprice "
     "lasttrade final clspric adjclose adjustedclose closeadj closelast 收 收盘 收盘价 最新 最新价 "
     "现价 结算价 schluss schlusskurs schlussstand letzter letzte zuletzt cloture clot fermeture "
     "dernier cierre ultimo ult fechamento fecho fech chiusura chius slot slotkoers sluiting "
     "laatste zamkniecie zam zamk закрытие закр последняя 終値 kapanis simdi 종가 senast zaro"},
    {Meaning::Price,
     "price p px tradeprice dealprice rate quote value nav kurs preis prix cours precio prezzo "
     "preco prijs koers cena цена курс 价格 价 成交价 成交价格 株価 値段 価格 fiyat 가격 pris"},
    {Meaning::Volume,
     "volume vol v vlm volum totalvolume totvol tradevolume tradedvolume tradingvolume volumn qty "
     "quantity shares size lots lot tradesize tradeqty lastsize totalqty totaltradedquantity "
     "tottrdqty tradedqty ttltradgvol nooftradedshares noofshares sharestraded contractstraded "
     "volfrom volumefrom basevolume "
     "成交量 总成交量 量 成交股数 成交手数 总手 volumen stuck stucke stuckzahl gehandeltestucke "
     "volumes "
     "quantite titresechanges cantidad quantidade qtd quantita volumi aantal wolumen объем "
     "количество 出来高 売買高 hacim lot 거래량 omsatt forgalom"},
    {Meaning::UpVolume, "upvolume upvol up volumeup volup buyvolume"},
    {Meaning::DownVolume, "downvolume downvol down dn dnvol volumedown voldown sellvolume"},
    {Meaning::UnchangedVolume, "unchangedvolume unchvol unchangedvol unchanged"},
    {Meaning::TickVolume, "tickvol tickvolume tickvolumes ticks ticksvolume tickcount"},
    {Meaning::UpTicks, "upticks uptick uptrades"},
    {Meaning::DownTicks, "downticks downtick downtrades"},
    {Meaning::UnchangedTicks, "unchangedticks unchticks"},
    {Meaning::Trades,
     "trades numtrades numberoftrades numoftrades nooftrades notrades totaltrades totalticks "
     "numticks tradecount tradescount tradenum transactions deals count n cnt totaltransactions "
     "ttlnboftxsexctd 成交笔数 笔数 总笔数 "
     "anzahl transactiesaantal nombre negocios operaciones liczbatransakcji transakcje "
     "сделки сделок 約定回数 islem islemsayisi"},
    {Meaning::OpenInterest,
     "openinterest openint previousdayopeninterest oi opint openinteres opnintrst 持仓 持仓量 "
     "空盘量 未平仓 未平仓合约 "
     "offenekontrakte interesabierto contratosabertos lop открытыйинтерес открытыепозиции "
     "建玉 建玉残高 acikpozisyon"},
    {Meaning::Other,
     "bid ask bidprice askprice bidsize asksize bidqty askqty offer geld brief kupno sprzedaz 买价 "
     "卖价 买一 卖一 買気配 売気配 покупка продажа alis satis "
     "amount amt turnover turnoverrate tradevalue tradedvalue notional quotevolume volumeto "
     "quoteassetvolume tottrdval ttltrfval turnoverlacs money totalvalue marketcap mktcap "
     "marketvalue capitalization cap 成交额 成交金额 总成交额 换手率 总市值 流通市值 市值 市盈率 "
     "umsatz "
     "umsatzeur capitaux montant importe monto giro controvalore omzet obrot obroty оборот "
     "売買代金 時価総額 ciro "
     "contract contractmonth expiry expiration expirydate strike series optiontype exdividend "
     "dividend dividends split splits splitratio stocksplits splitfactor splitcoefficient "
     "capitalgains factor adjfactor divcash "
     "prevclose preclose previousclose prclsgpric pctchange pctchg change chg changepct var "
     "varpct 涨跌 涨跌额 涨跌幅 涨幅 振幅 前收盘 昨收 昨收盘 昨收价 前收 换手 复权因子 "
     "均价 veranderung variation variacion variazione wijziging verandering zmiana изм изменение "
     "前日比 騰落率 fark degisim "
     "vwap wap average avgprice averageprice spread per period interval timeframe exchange exch "
     "market board mic venue country currency ccy conditions condition cond side flag flags type "
     "index idx no id row rownum rowid number sequence seq rank weekday dayofweek "
     "week year month minute second quarter timezone tz millisecond milliseconds ms "
     "rsi macd sma ema ma bb atr adx cci obv roc stoch signal return returns logreturn "
     "volatility trin beta alpha label target prediction takerbuybasevolume "
     "takerbuyquotevolume takerbuybaseassetvolume takerbuyquoteassetvolume ignore"},
};

constexpr std::string_view kFillerWords =
    "price prices pric the of in at for and usd usdt eur gbp jpy cny chf pln rub inr cad aud nzd "
    "hkd sek nok dkk try brl btc eth bnb ltc xrp xbt level preis kurs cena prix cours precio "
    "prezzo preco koers prijs цена курс fiyat day daily today bar session regular intraday raw "
    "unadjusted adj adjusted adjclose local utc gmt est et eastern new york london trading "
    "traded trade shs shares lots k m mln mio";

constexpr std::string_view kOtherWords =
    "prev previous prior pre change chg pct percent percentage diff difference delta "
    "return returns log avg average mean median vwap std stdev dev sma ema wma ma rsi macd signal "
    "upper lower band week weeks wk w year years yr month range limit target ratio spread "
    "dividend split factor cumulative rolling norm normalized scaled predicted forecast value "
    "turnover amount quote taker implied iv vorjahr";

} // namespace

std::span<const HeadingRow> HeadingRows()
{
    return kHeadingRows;
}

std::string_view FillerWords()
{
    return kFillerWords;
}

std::string_view OtherWords()
{
    return kOtherWords;
}

} // namespace tabulex
